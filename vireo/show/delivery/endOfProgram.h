#pragma once

namespace tavo {

// Has the front door closed in order when the program ends: pictures are saved where VIREO_SHOW asks for them, what
// nobody ever saw is said, the window's thread ends before Qt's plugins are torn down. From then on nothing is shown.
// To be called when anything is sent, and again whenever plugins may have been loaded: what was loaded last is torn
// down first.
void endProgramInOrder();

// Whether that has happened, in this thread.
bool isEndingProgram() noexcept;

} // namespace tavo
