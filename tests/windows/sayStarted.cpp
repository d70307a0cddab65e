#include <windows.h>

// Part of every test program: as its first act it makes the file that run-with-wine names, so that a program that Wine
// has not started can be told from a test that fails.

[[gnu::constructor(101)]] static void sayStarted()
{
    char file[MAX_PATH];
    const DWORD length = GetEnvironmentVariableA("VIREO_STARTED_FILE", file, sizeof file);
    if (length == 0 || length >= sizeof file)
        return;
    const HANDLE made = CreateFileA(file, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (made != INVALID_HANDLE_VALUE)
        CloseHandle(made);
}
