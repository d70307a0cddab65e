# cmake -DMAN=<program> -DPAGE=<file> -P manPage.cmake
# Fails unless man shows a page without a warning, with its name, what the program is given, and what belongs to it.
set(ENV{MANWIDTH} 80)
set(ENV{LC_ALL} C.UTF-8)
execute_process(COMMAND ${MAN} --warnings --local-file ${PAGE} OUTPUT_VARIABLE page ERROR_VARIABLE warnings
    COMMAND_ERROR_IS_FATAL ANY)
if(warnings)
    message(FATAL_ERROR "${warnings}")
endif()
foreach(section NAME SYNOPSIS DESCRIPTION OPTIONS "SEE ALSO")
    if(NOT page MATCHES "\n${section}\n")
        message(SEND_ERROR "${PAGE} has no section ${section}")
    endif()
endforeach()
