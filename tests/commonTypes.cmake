# cmake -P commonTypes.cmake <root of the tree>
# Fails, and names each, on lines that spell out a type which tavo/base/math/vectors.h has a name for, or that give it another,
# and on lines of documents and examples that call it by an older name.
cmake_minimum_required(VERSION 3.25)

set(tree ${CMAKE_ARGV3})

# Where the names come from, and what they are made of.
set(home tavo/base/math/vectors.h)
set(templates tavo/base/math/StaticVector.h tavo/base/math/BoundingBox.h)
set(home_test tests/tavo/base/math/vectorsTest.cpp)
# Other names that callers know.
set(known "using (RGBA = RGBA8|PolyVector3f = Vector3f);")
# Those that documents and examples do not use.
set(older "SliceVolumeRenderer::RGBA([^A-Za-z0-9_]|$)")

set(names)
set(types)
file(STRINGS ${tree}/${home} definitions REGEX "^using [A-Za-z0-9]+ = ")
foreach(line IN LISTS definitions)
    string(REGEX MATCH "^using ([A-Za-z0-9]+) = (.*>)" matched "${line}")
    list(APPEND names ${CMAKE_MATCH_1})
    list(APPEND types ${CMAKE_MATCH_2})
endforeach()
if(NOT names)
    message(FATAL_ERROR "${home} names no type")
endif()
list(JOIN names "|" any_name)
list(JOIN types "|" any_type)

set(patterns)
foreach(folder apps benchmarks examples tavo tests vireo)
    list(APPEND patterns ${tree}/${folder}/*.h ${tree}/${folder}/*.cpp)
endforeach()
file(GLOB_RECURSE files RELATIVE ${tree} ${patterns})
list(REMOVE_ITEM files ${home} ${templates} ${home_test})
foreach(file IN LISTS files)
    file(STRINGS ${tree}/${file} lines REGEX "${any_type}|using [A-Za-z0-9]+ = (tavo::)?(${any_name});")
    foreach(line IN LISTS lines)
        if(NOT line MATCHES "${known}")
            string(STRIP "${line}" line)
            message(SEND_ERROR "${file} does not use the name that ${home} has: ${line}")
        endif()
    endforeach()
endforeach()

file(GLOB documents RELATIVE ${tree} ${tree}/*.md ${tree}/docs/*.md)
file(GLOB_RECURSE examples RELATIVE ${tree} ${tree}/examples/*.h ${tree}/examples/*.cpp)
foreach(file IN LISTS documents examples)
    file(STRINGS ${tree}/${file} lines REGEX "${older}")
    foreach(line IN LISTS lines)
        string(STRIP "${line}" line)
        message(SEND_ERROR "${file} uses an older name of what ${home} has: ${line}")
    endforeach()
endforeach()
