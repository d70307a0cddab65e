#include "vireo/show/slices/gesturesOfSlices.h"

namespace tavo {

std::vector<Gesture> gesturesOfSlices()
{
    return {
        {"click, drag", "moves the crosshair"},
        {"wheel, Page Up, Page Down", "goes through the slices, one by one or by ten"},
        {"arrows", "move the crosshair in the plane that the pointer was on last"},
        {"point at a sample", "says its place and its number"},
        {"Ctrl + wheel, +, -", "zooms at the pointer"},
        {"middle drag, Shift + drag", "moves the slices"},
        {"right drag, Ctrl + drag", "changes the window: wider to the right, higher upwards"},
        {"r", "finds the window afresh"},
        {"m", "measures: two clicks show their distance; m or Esc ends it"},
        {"i", "interpolates between samples, or no longer"},
        {"n, f", "turn slices round: the patient's right, or the front, to the other side"},
        {"v", "shows or hides the volume beside the slices"},
        {"p", "shows or hides the panel"},
        {"Home", "shows all"},
        {"Ctrl+C, Ctrl+S", "copies or saves a picture"},
        {"Ctrl+D", "saves the data"},
        {"F11", "full screen"},
        {"?, F1", "this list"},
    };
}

} // namespace tavo
