# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
#
# One interface target carries the language level, the warnings and the strictness towards the
# toolkit; every target of the project links it.

# The folders that know the system: every room has the same contracts in both.
set(LOGBOOK_SYSTEM posix)
if(WIN32)
  set(LOGBOOK_SYSTEM win32)
endif()

add_library(logbook_options INTERFACE)
target_compile_features(logbook_options INTERFACE cxx_std_20)
target_compile_options(logbook_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wno-missing-field-initializers
  $<$<BOOL:${LOGBOOK_WERROR}>:-Werror>)
# Version 12 of this compiler sees overlaps that are not there when it inlines std::string.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(logbook_options INTERFACE -Wno-restrict)
endif()
target_compile_definitions(logbook_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_CONTEXTLESS_CONNECT QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER)
if(LOGBOOK_SANITIZE)
  target_compile_options(logbook_options INTERFACE
    -fsanitize=${LOGBOOK_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(logbook_options INTERFACE -fsanitize=${LOGBOOK_SANITIZERS})
endif()
if(LOGBOOK_FUZZ)
  target_compile_options(logbook_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer)
  target_link_options(logbook_options INTERFACE -fsanitize=address,undefined)
endif()

# Programs for Windows stand alone: no library of the compiler or of ours lies beside them.
# Our own sources ask the headers for nothing newer than Windows 7; the toolkit asks by itself, and
# it is what wants Windows 10.
if(WIN32)
  target_link_options(logbook_options INTERFACE -static)
  add_compile_definitions(_WIN32_WINNT=0x0601)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

find_program(LOGBOOK_CCACHE ccache)
if(LOGBOOK_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${LOGBOOK_CCACHE})
endif()

# program_facts(<program> <description> [<icon>]): what Windows shows of a program's file: version,
# product, description, and its icon. Of no effect elsewhere.
function(program_facts program description)
  if(NOT WIN32)
    return()
  endif()
  set(icon "")
  if(ARGN)
    set(icon "IDI_ICON1 ICON \"${ARGV2}\"")
  endif()
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${program}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/ProgramFacts.rc.in ${source} @ONLY)
  # By itself: the resource compiler does not know the options of our C++ sources.
  add_library(${program}_facts OBJECT ${source})
  if(ARGN)
    set_source_files_properties(${source} PROPERTIES OBJECT_DEPENDS ${ARGV2})
  endif()
  target_link_libraries(${program} PRIVATE ${program}_facts)
endfunction()

# library_name(<variable> <file>): the name by which the loader finds a shared library.
function(library_name variable file)
  execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${file} OUTPUT_VARIABLE headers
    COMMAND_ERROR_IS_FATAL ANY)
  if(NOT headers MATCHES "SONAME +([^\n]+)")
    message(FATAL_ERROR "${file} has no name for the loader")
  endif()
  set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

# logbook_test(<room> SOURCES <files> [POSIX <files>] [WIN32 <files>] [LINKS <targets>]
# [PROGRAM <name>] [LABELS <label>] [TIMEOUT <seconds>]): a test program for a room, "tests_<room>"
# unless named otherwise, each case a test of its own named "<room>.<suite>.<case>", which ends after
# five minutes unless told otherwise; with a sanitizer, which makes it several times slower, after
# twenty. Cases with the label "long" are left out of an ordinary ./test. The POSIX files need that
# kind of system to test on; what a build for Windows leaves out for that is listed in
# skipped-tests.txt.
function(logbook_test room)
  cmake_parse_arguments(ARG "" "PROGRAM;LABELS;TIMEOUT" "SOURCES;POSIX;WIN32;LINKS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
    if(LOGBOOK_SANITIZE)
      set(ARG_TIMEOUT 1200)
    endif()
  endif()
  set(target tests_${room})
  if(ARG_PROGRAM)
    set(target ${ARG_PROGRAM})
  endif()
  if(WIN32)
    list(APPEND ARG_SOURCES ${ARG_WIN32})
    list(FILTER ARG_POSIX INCLUDE REGEX "Test\\.cpp$")
    foreach(file IN LISTS ARG_POSIX)
      file(APPEND ${PROJECT_BINARY_DIR}/skipped-tests.txt
        "${room}: ${file}: needs calls, rights or programs of POSIX systems\n")
    endforeach()
  else()
    list(APPEND ARG_SOURCES ${ARG_POSIX})
  endif()
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE logbook_options logbook_test_support ${ARG_LINKS}
    GTest::gtest GTest::gmock GTest::gtest_main nlohmann_json::nlohmann_json)
  target_compile_definitions(${target} PRIVATE TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data")
  if(WIN32)
    set(substitutes ${PROJECT_SOURCE_DIR}/tests/support/win32)
    target_include_directories(${target} PRIVATE ${substitutes}/headers)
    target_compile_options(${target} PRIVATE -include ${substitutes}/PosixCalls.h)
  endif()
  gtest_discover_tests(${target} TEST_PREFIX "${room}." DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
endfunction()

# build_tool(<name> <source>...): a program that the build itself runs. Where it builds for another
# system, the machine's own compiler makes it, already while configuring.
function(build_tool name)
  if(NOT CMAKE_CROSSCOMPILING)
    add_executable(${name} ${ARGN})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PRIVATE logbook_options)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
    return()
  endif()
  find_program(LOGBOOK_HOST_COMPILER c++ REQUIRED)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ OUTPUT_VARIABLE sources)
  set(program ${CMAKE_CURRENT_BINARY_DIR}/${name})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources})
  execute_process(COMMAND ${LOGBOOK_HOST_COMPILER} -std=c++20 -O1 -I${PROJECT_SOURCE_DIR}/src
    ${sources} -o ${program} COMMAND_ERROR_IS_FATAL ANY)
  add_executable(${name} IMPORTED GLOBAL)
  set_target_properties(${name} PROPERTIES IMPORTED_LOCATION ${program})
endfunction()
