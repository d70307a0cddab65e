#include "vireo/show/plots/gesturesOfPlots.h"

namespace tavo {

std::vector<Gesture> gesturesOfPlots()
{
    return {
        {"point at a sample", "names it, and the other curves there"},
        {"wheel, pinch", "zooms at the pointer; with Ctrl, x alone; over an axis, that axis alone"},
        {"Shift + wheel", "moves along x"},
        {"drag, middle drag", "moves; on an axis, along that axis alone"},
        {"right drag, Shift + drag", "zooms into a box; Alt takes all of x, Shift all of y, Esc gives it up"},
        {"right click", "a menu"},
        {"double click, Home", "shows all; on an axis, along that axis alone"},
        {"Ctrl+Z, Backspace", "back to what was seen before"},
        {"Ctrl+Shift+Z, Shift+Backspace", "forward again"},
        {"Space", "follows the newest data, or stops"},
        {"M", "measures between two cursors, which can be dragged"},
        {"click in the legend", "hides a curve, or shows it"},
        {"double click, Alt + click in the legend", "shows one curve alone, or what was shown before"},
        {"point in the legend", "lifts a curve"},
        {"Ctrl+C, Ctrl+S", "copies or saves a picture"},
        {"Ctrl+D, Ctrl+Shift+D", "saves the data, all or those in view"},
        {"F11", "full screen"},
        {"?, F1", "this list"},
    };
}

} // namespace tavo
