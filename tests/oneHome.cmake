# cmake -P oneHome.cmake <root of the tree>
# Fails, and names each, on lines in vireo/ that do by themselves what another file is there for.
cmake_minimum_required(VERSION 3.25)

set(tree ${CMAKE_ARGV3})

# check(<what to use instead> <regular expression> <files in vireo/ that may do it>...)
function(check instead expression)
    file(GLOB_RECURSE files RELATIVE ${tree}/vireo ${tree}/vireo/*.h ${tree}/vireo/*.cpp)
    list(REMOVE_ITEM files ${ARGN})
    foreach(file IN LISTS files)
        file(STRINGS ${tree}/vireo/${file} lines REGEX "${expression}")
        foreach(line IN LISTS lines)
            string(STRIP "${line}" line)
            if(NOT line MATCHES "^//")
                message(SEND_ERROR "vireo/${file} could use ${instead}: ${line}")
            endif()
        endforeach()
    endforeach()
endfunction()

check("a class of vireo/context/SavedState.h" "gl(Push|Pop)(Client)?Attrib|gl(Begin|End) ?\\("
    context/SavedState.h context/tidyUpGl.cpp)
check("SavedMatrix of vireo/context/SavedState.h" "gl(Push|Pop)Matrix"
    context/SavedState.h context/tidyUpGl.cpp geometry/GLHelper.cpp)
check("isExtensionSupported" "GL_EXTENSIONS|GLExtensionLoader::getInstance|[!(&|] *gl[A-Za-z0-9]+(ARB|EXT|NV)( *[)&|]|$)"
    context/classNeeds.cpp context/GLExtensionLoader.cpp context/GLExtensions.cpp context/GLExtensions.h geometry/GLSimpleObjects.cpp machine/DriverTrial.cpp)
check("GLContext::activate, or CurrentContextGuard" "wglMakeCurrent *\\("
    context/CurrentContextGuard.cpp context/GLContext.cpp displayers/ViewContext.cpp machine/MachineReport.cpp
    show/scenes/SceneContext.cpp)
check("GLObject::requireContext" "PException\\(.* - invalid context")
