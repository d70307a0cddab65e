// Part of programs, built with the sanitizers, whose QApplication lives in a thread that Qt has not made: Qt never
// frees what it keeps of that thread, and its stacks name nothing but its library.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libQt5Core.so";
}
