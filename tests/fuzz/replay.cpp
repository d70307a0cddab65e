#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/fuzz/Fuzzing.h"

namespace fs = std::filesystem;

namespace {

// False, with a line that says why, if the reader does not keep its word.
bool replay(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    std::string reason = "what was thrown is no exception";
    try {
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        return true;
    } catch (const std::exception& error) {
        reason = error.what();
    } catch (...) {
    }
    std::printf("%s: %s\n", file.string().c_str(), reason.c_str());
    return false;
}

} // namespace

// Runs a fuzz target over all files of folders: replay FOLDER... Each folder must hold some.
int main(int argc, char** argv)
{
    bool isGood = argc > 1;
    for (int i = 1; i < argc; ++i) {
        int numFiles = 0;
        for (const fs::directory_entry& entry : fs::directory_iterator(argv[i])) {
            isGood = replay(entry.path()) && isGood;
            ++numFiles;
        }
        std::printf("%s: %d files\n", argv[i], numFiles);
        isGood = isGood && numFiles > 0;
    }
    return isGood ? 0 : 1;
}
