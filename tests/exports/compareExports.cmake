# cmake -DLIBRARY=<.so or import library> -DLIST=<file> -DNM=<nm> -DCXXFILT=<c++filt> [-DLEFT_OUT=<class>] [-DUPDATE=ON]
#       -P compareExports.cmake
# Fails unless a library exports exactly the names in a list, less those of a class that is left out; or writes the list.

# The exported names, mangled: those of an import library are the ones with a prefix, of a shared object those in its
# dynamic symbol table.
function(get_exported_symbols result)
    if(LIBRARY MATCHES "\\.dll\\.a$")
        set(mode)
        set(prefix " I __imp_")
    else()
        set(mode --dynamic)
        set(prefix " [A-Za-z] ")
    endif()
    execute_process(COMMAND ${NM} ${mode} --defined-only ${LIBRARY}
        OUTPUT_VARIABLE symbols ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "${prefix}[^\n]+" symbols "${symbols}")
    list(TRANSFORM symbols REPLACE "^${prefix}" "")
    set(${result} "${symbols}" PARENT_SCOPE)
endfunction()

# The names as they are written in C++, without what only one platform or compiler has: thunks of virtual tables, names of
# types, instances of function templates that are a library's own (written with what they return), what is the standard
# library's or Qt's, what Qt hides where it can, what the linker or a sanitizer adds. std::size_t is unsigned long
# or unsigned long long.
function(get_public_names result)
    get_exported_symbols(symbols)
    set(file ${LIBRARY}.symbols)
    list(JOIN symbols "\n" lines)
    file(WRITE ${file} "${lines}\n")
    execute_process(COMMAND ${CXXFILT} INPUT_FILE ${file} OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE ${file})
    string(REPLACE "long long" "long" names "${names}")
    string(REGEX REPLACE "([0-9])ull" "\\1ul" names "${names}")
    string(REGEX REPLACE "\n$" "" names "${names}")
    string(REPLACE "\n" ";" names "${names}")
    list(FILTER names EXCLUDE REGEX "^(non-virtual thunk to|virtual thunk to|typeinfo name for) ")
    list(FILTER names EXCLUDE REGEX "^[^(<]* tavo::[^(]*<.*[(]")
    list(FILTER names EXCLUDE REGEX "^((vtable|typeinfo) for )?(std::|Q[A-Z])")
    list(FILTER names EXCLUDE REGEX "^([^(]*[ *&])?(std|__gnu_cxx)::_")
    list(FILTER names EXCLUDE REGEX "^[a-z ]+[&*]? std::")
    list(FILTER names EXCLUDE REGEX "^tavo::[^(<]* std::")
    list(FILTER names EXCLUDE REGEX "^(_end|_edata|__bss_start|__odr_asan[.].*)$")
    list(FILTER names EXCLUDE REGEX "::qt_static_metacall\\(")
    list(REMOVE_DUPLICATES names)
    set(${result} "${names}" PARENT_SCOPE)
endfunction()

function(report names what)
    if(names)
        list(JOIN names "\n    " lines)
        message(SEND_ERROR "${what}\n    ${lines}\n"
            "If that is meant, build the target update-exports and look at what has changed.")
    endif()
endfunction()

get_public_names(exported)
set(listed)
if(EXISTS ${LIST})
    file(STRINGS ${LIST} listed)
endif()
set(left_out)
if(LEFT_OUT)
    set(left_out ${listed})
    list(FILTER left_out INCLUDE REGEX "${LEFT_OUT}")
    list(FILTER listed EXCLUDE REGEX "${LEFT_OUT}")
endif()

if(UPDATE)
    list(APPEND exported ${left_out})
    list(SORT exported)
    list(JOIN exported "\n" lines)
    file(WRITE ${LIST} "${lines}\n")
    return()
endif()

# What is inline in the header of another library is in both, as compilers like it.
get_filename_component(folder ${LIST} DIRECTORY)
file(GLOB lists ${folder}/*.txt)
set(listed_elsewhere)
foreach(list IN LISTS lists)
    file(STRINGS ${list} names)
    list(APPEND listed_elsewhere ${names})
endforeach()

set(new ${exported})
list(REMOVE_ITEM new ${listed} ${listed_elsewhere})
set(missing ${listed})
list(REMOVE_ITEM missing ${exported})
report("${new}" "${LIBRARY} exports what ${LIST} does not list:")
report("${missing}" "${LIBRARY} does not export what ${LIST} lists:")
