#pragma once

// VIREO_REPLACE(function, symbol, replacement, parameterCount)
// Has every call of a library's function go to `replacement`. The function must be declared.
//
// A DLL or program calls the functions of others through a table of its imports. Before the main function starts, those
// entries that name the symbol are set to the replacement, in all that has been loaded with the program.
#define VIREO_REPLACE(function, symbol, replacement, parameterCount)                                                   \
    static const ::tavo::ReplacedImport replaced_##function(symbol, replacement);

namespace tavo {

class ReplacedImport
{
public:
    template <typename Function>
    ReplacedImport(const char* symbol, Function* replacement)
    {
        replace(symbol, reinterpret_cast<const void*>(replacement));
    }

private:
    static void replace(const char* symbol, const void* replacement);
};

} // namespace tavo
