# Run as a test: cmake -DSOURCE_DIR=<src> -P CheckLayers.cmake
#
# The core library is built in layers, each on the ones below it, and a
# layer calls a higher one only through what that layer installs (the
# partner route of message boxes, the settings the library frame reads).
# This fails, naming each line, when a file includes a folder that its
# folder may not use. Folders not listed (the window classes) may use all,
# and so may the "ui" subfolder of a layer, which holds that layer's window
# classes and is built into vxbase-ui (config/ui: the expert editor).

cmake_minimum_required(VERSION 3.25)

set(allowed_platform platform)
set(allowed_base     platform base)
set(allowed_config   platform base config)
set(allowed_pages    platform base pages)
set(allowed_database platform base database)
set(allowed_geometry platform base geometry)
set(allowed_xml      platform base xml)
set(allowed_process  platform base config pages process)
set(allowed_ui       platform base ui)
set(layers platform base config pages database geometry xml process ui)

if(NOT SOURCE_DIR)
    message(FATAL_ERROR "CheckLayers.cmake needs -DSOURCE_DIR=<the src folder>")
endif()

set(faults "")
foreach(layer IN LISTS layers)
    file(GLOB_RECURSE files ${SOURCE_DIR}/${layer}/*.h ${SOURCE_DIR}/${layer}/*.cpp)
    if(NOT layer STREQUAL "ui")
        list(FILTER files EXCLUDE REGEX "/${layer}/ui/")
    endif()
    foreach(f IN LISTS files)
        file(STRINGS ${f} lines REGEX "^[ \t]*#[ \t]*include[ \t]*\"[a-z_]+/")
        foreach(line IN LISTS lines)
            string(REGEX MATCH "\"([a-z_]+)/" _ "${line}")
            set(used ${CMAKE_MATCH_1})
            if(NOT used IN_LIST allowed_${layer})
                file(RELATIVE_PATH rel ${SOURCE_DIR} ${f})
                string(STRIP "${line}" line)
                string(APPEND faults "  src/${rel}: ${line} (${layer}/ may use ${allowed_${layer}})\n")
            endif()
        endforeach()
    endforeach()
endforeach()

if(faults)
    message(FATAL_ERROR "Includes against the layers of the library:\n${faults}")
endif()
message(STATUS "Every include follows the layers")
