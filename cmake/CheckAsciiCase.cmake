# Run as a test: cmake -DSOURCE_DIR=<src> -P CheckAsciiCase.cmake
#
# The library folds ASCII letters only, whatever locale the host sets, and
# does so in one place (platform/framework/util_p.h). The C library's case
# functions follow the locale, so this fails, naming each line, when a
# source calls one of them.

cmake_minimum_required(VERSION 3.25)

if(NOT SOURCE_DIR)
    message(FATAL_ERROR "CheckAsciiCase.cmake needs -DSOURCE_DIR=<the src folder>")
endif()

set(pattern "(^|[^A-Za-z0-9_.>:])(std::)?(tolower|toupper|_tolower|_toupper|strcasecmp|strncasecmp|strcasestr|tolower_l|toupper_l)[ \t]*\\(")
file(GLOB_RECURSE files ${SOURCE_DIR}/*.h ${SOURCE_DIR}/*.cpp)
set(faults "")
foreach(f IN LISTS files)
    file(STRINGS ${f} lines REGEX "${pattern}")
    foreach(line IN LISTS lines)
        string(STRIP "${line}" line)
        if(line MATCHES "^//")
            continue()
        endif()
        file(RELATIVE_PATH rel ${SOURCE_DIR} ${f})
        string(APPEND faults "  src/${rel}: ${line}\n")
    endforeach()
endforeach()

if(faults)
    message(FATAL_ERROR "Case functions of the C library (use vx::AsciiLower and its kin of "
                        "platform/framework/util_p.h):\n${faults}")
endif()
message(STATUS "No case function of the C library")
