# cmake -P folderOrder.cmake <root of the tree>
# Fails, and names each, on includes in vireo/ that go against the order of its folders: a file may include what lies in its own
# folder or on a floor below. Folders on the same floor do not know each other, or they could form a circle. show/, which is a
# library of its own, includes nothing else of vireo/, but for show/scenes/, show/volumes/ and show/images/, and where sections
# of displayers are put into its window. Nothing in tavo/ includes anything of vireo/.
cmake_minimum_required(VERSION 3.25)

set(tree ${CMAKE_ARGV3})

# From the ground up.
set(floors "context,resources" "textures,geometry,shaders,volume,machine" "offscreen,displayers" "reports" "." "show")
set(open_to_all Export.h)
# Old places of headers, one include each.
set(moved context/Library.h)

# floor_of(<folder> <variable>): -1 for one that no floor has.
function(floor_of folder variable)
    set(${variable} -1 PARENT_SCOPE)
    set(number 0)
    foreach(floor IN LISTS floors)
        string(REPLACE "," ";" folders ${floor})
        if(folder IN_LIST folders)
            set(${variable} ${number} PARENT_SCOPE)
        endif()
        math(EXPR number "${number} + 1")
    endforeach()
endfunction()

# folder_of(<file> <variable>): the first one on the way from vireo/, "." for vireo/ itself.
function(folder_of file variable)
    set(${variable} . PARENT_SCOPE)
    if(file MATCHES "^([^/]+)/")
        set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
    endif()
endfunction()

function(check_include file included)
    folder_of(${file} from)
    folder_of(${included} to)
    if(from STREQUAL show AND NOT to STREQUAL show AND NOT file MATCHES "^show/(scenes|images|volumes)/|/sectionContent.cpp$")
        message(SEND_ERROR "vireo/${file} includes vireo/${included}: show/ includes only what is its own")
        return()
    elseif(included IN_LIST open_to_all)
        return()
    endif()
    floor_of(${from} own_floor)
    floor_of(${to} other_floor)
    if(other_floor EQUAL -1)
        message(SEND_ERROR "vireo/${file} includes vireo/${included}: ${to}/ is on no floor (see floors in this script)")
    elseif(NOT from STREQUAL to AND NOT other_floor LESS own_floor)
        message(SEND_ERROR "vireo/${file} includes vireo/${included}: ${to}/ is not below ${from}/")
    endif()
endfunction()

file(GLOB_RECURSE files RELATIVE ${tree}/vireo ${tree}/vireo/*.h ${tree}/vireo/*.cpp)
list(REMOVE_ITEM files ${moved})
foreach(file IN LISTS files)
    folder_of(${file} folder)
    floor_of(${folder} floor)
    if(floor EQUAL -1)
        message(SEND_ERROR "vireo/${file}: ${folder}/ is on no floor (see floors in this script)")
        continue()
    endif()
    cmake_path(GET file PARENT_PATH here)
    file(STRINGS ${tree}/vireo/${file} includes REGEX "^ *# *include *(\"|<vireo/)")
    foreach(line IN LISTS includes)
        string(REGEX REPLACE "^[^\"<]*[\"<]([^\">]*)[\">].*$" "\\1" included "${line}")
        if(included MATCHES "^tavo/")
            continue()
        elseif(NOT included MATCHES "^vireo/")
            set(included vireo/${here}/${included}) # as the compiler sees it first
        endif()
        cmake_path(NORMAL_PATH included)
        if(included MATCHES "^vireo/(.*)$")
            check_include(${file} ${CMAKE_MATCH_1})
        else()
            message(SEND_ERROR "vireo/${file} leaves vireo/ by a relative path: ${line}")
        endif()
    endforeach()
endforeach()

file(GLOB_RECURSE files RELATIVE ${tree} ${tree}/tavo/*.h ${tree}/tavo/*.cpp)
foreach(file IN LISTS files)
    file(STRINGS ${tree}/${file} includes REGEX "^ *# *include *[\"<](.*/)?vireo/")
    foreach(line IN LISTS includes)
        message(SEND_ERROR "${file} knows nothing of vireo/, but has: ${line}")
    endforeach()
endforeach()
