#include "vireo/show/scenes/gesturesOfScenes.h"

namespace tavo {

std::vector<Gesture> gesturesOfScenes()
{
    return {
        {"drag", "turns; z stays up"},
        {"right drag, middle drag, Shift + drag", "moves with the pointer"},
        {"wheel", "zooms to what is under the pointer"},
        {"point at something", "says what it is"},
        {"click", "pins what is hit; two pins show their distance"},
        {"Esc", "takes the pins away"},
        {"double click", "moves what is hit to the middle; on nothing, shows all"},
        {"Home", "shows all"},
        {"1, 3, 7", "looks from the front, the right or the top; with Ctrl, from the opposite side"},
        {"o", "switches between perspective and orthographic views"},
        {"b", "shows or hides the bearings"},
        {"p", "shows or hides the panel"},
        {"Tab", "colours what is selected by its next field"},
        {"+, -, Alt + wheel", "makes points and lines larger or smaller"},
        {"c", "shows only what is in a box, or everything again"},
        {"Shift + c", "takes away what is in a box, a corner at first, or no longer"},
        {"x, y, z", "shows only a thin slab along that axis, or what it showed before"},
        {"drag a handle of the box", "moves its face; of a slab, all of it, or with Shift the face"},
        {"Shift + wheel", "moves the slab"},
        {"Ctrl + drag", "changes the range of a volume: wider to the right, higher upwards"},
        {"g", "walks through the scene: w, a, s, d or the arrows, e and q; g or Esc ends it"},
        {"Ctrl+C, Ctrl+S", "copies or saves a picture"},
        {"Ctrl+D", "saves the data"},
        {"F11", "full screen"},
        {"?, F1", "this list"},
    };
}

} // namespace tavo
