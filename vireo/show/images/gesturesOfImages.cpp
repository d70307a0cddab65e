#include "vireo/show/images/gesturesOfImages.h"

namespace tavo {

std::vector<Gesture> gesturesOfImages()
{
    return {
        {"wheel, +, -", "zooms at the pointer"},
        {"drag", "moves the image"},
        {"point at a pixel", "says its place and its numbers"},
        {"Shift + drag", "draws a line, and shows the numbers along it as a plot; Esc takes it away"},
        {"double click, Home", "shows all"},
        {"1", "shows it as it is: a pixel of the screen for each of its own"},
        {"Ctrl+Z, Backspace, back button", "goes back to the part and the colours before"},
        {"Ctrl+Shift+Z, Shift + Backspace, forward button", "goes forward again"},
        {"c", "shows the next channel alone, and then all of them"},
        {"Page Down, Page Up", "shows the next one of a stack, or the one before"},
        {"r", "finds the range afresh"},
        {"p", "shows or hides the panel"},
        {"Ctrl+C, Ctrl+S", "copies or saves a picture"},
        {"Ctrl+D", "saves the data"},
        {"F11", "full screen"},
        {"?, F1", "this list"},
    };
}

} // namespace tavo
