#include "replaceFunction.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <unordered_map>

#include "tavo/platform/wgl.h"
#include "tests/support/libraryFunction.h"

// clang-format off: last, because it needs what Windows' main header declares
#include <psapi.h>
// clang-format on

namespace tavo {

namespace {

// Where a module holds the address of a function that it imports.
using Slot = ULONGLONG;
using Imports = std::unordered_multimap<std::string_view, Slot*>;

std::span<const HMODULE> loadedModules()
{
    static std::array<HMODULE, 1024> modules;
    DWORD bytes = 0;
    if (!EnumProcessModules(GetCurrentProcess(), modules.data(), sizeof modules, &bytes))
        return {};
    return {modules.data(), std::min(modules.size(), bytes / sizeof(HMODULE))};
}

template <typename Part>
Part* partOf(HMODULE module, DWORD offset)
{
    return reinterpret_cast<Part*>(reinterpret_cast<char*>(module) + offset);
}

// The functions that a module imports by name.
void addImports(Imports& imports, HMODULE module)
{
    const auto* start = partOf<IMAGE_DOS_HEADER>(module, 0);
    const auto* header = partOf<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(start->e_lfanew));
    const IMAGE_DATA_DIRECTORY& directory = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.VirtualAddress == 0)
        return;
    const auto* library = partOf<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
    for (; library->Name != 0; ++library) {
        if (library->OriginalFirstThunk == 0)
            continue;
        const auto* import = partOf<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* slot = partOf<IMAGE_THUNK_DATA>(module, library->FirstThunk);
        for (; import->u1.AddressOfData != 0; ++import, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(import->u1.Ordinal))
                continue;
            const auto* name = partOf<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(import->u1.AddressOfData));
            imports.emplace(name->Name, &slot->u1.Function);
        }
    }
}

const Imports& allImports()
{
    static const Imports imports = [] {
        Imports all;
        for (const HMODULE module : loadedModules())
            addImports(all, module);
        return all;
    }();
    return imports;
}

} // namespace

void ReplacedImport::replace(const char* symbol, const void* replacement)
{
    const auto [begin, end] = allImports().equal_range(symbol);
    for (auto import = begin; import != end; ++import) {
        Slot* slot = import->second;
        DWORD protection = 0;
        VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
        *slot = reinterpret_cast<Slot>(replacement);
        VirtualProtect(slot, sizeof *slot, protection, &protection);
    }
}

AnyFunction libraryFunction(const char* symbol)
{
    for (const HMODULE module : loadedModules()) {
        if (const FARPROC function = GetProcAddress(module, symbol))
            return reinterpret_cast<AnyFunction>(function);
    }
    return nullptr;
}

} // namespace tavo
