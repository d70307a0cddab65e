# cmake -DPACKAGING=<folder> -DDATA_DIR=<scratch folder> -DUPDATE_MIME_DATABASE=<program> -P kindsOfFiles.cmake
# Fails unless the kinds of files are read without complaint, and the desktop file names each of them.
set(kinds ${PACKAGING}/desktop/vireo-view.xml)
set(database ${DATA_DIR}/mime)
set(ENV{XDG_DATA_HOME} ${DATA_DIR})
file(REMOVE_RECURSE ${DATA_DIR})
file(COPY ${kinds} DESTINATION ${database}/packages)
execute_process(COMMAND ${UPDATE_MIME_DATABASE} ${database} OUTPUT_VARIABLE output ERROR_VARIABLE output
    COMMAND_ERROR_IS_FATAL ANY)
if(output)
    message(FATAL_ERROR "${output}")
endif()

file(READ ${PACKAGING}/desktop/vireo-view.desktop desktop)
file(STRINGS ${kinds} types REGEX "<mime-type type=")
list(TRANSFORM types REPLACE ".*type=\"([^\"]+)\".*" "\\1")
foreach(type IN LISTS types)
    if(NOT EXISTS ${database}/${type}.xml)
        message(SEND_ERROR "${type} has not become known")
    endif()
    if(NOT desktop MATCHES "\nMimeType=([^\n]+;)?${type};")
        message(SEND_ERROR "the desktop file does not say that vireo-view shows ${type}")
    endif()
endforeach()
# Those that every desktop knows.
foreach(type application/dicom image/png image/jpeg image/tiff image/x-portable-graymap image/x-portable-pixmap text/csv
        text/tab-separated-values)
    if(NOT desktop MATCHES "\nMimeType=([^\n]+;)?${type};")
        message(SEND_ERROR "the desktop file does not say that vireo-view shows ${type}")
    endif()
endforeach()
