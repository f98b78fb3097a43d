# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
#
# One interface target carries the language level, the warnings and the strictness towards the
# toolkit; every target of the project links it.

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

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

find_program(LOGBOOK_CCACHE ccache)
if(LOGBOOK_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${LOGBOOK_CCACHE})
endif()

# library_name(<variable> <file>): the name by which the loader finds a shared library.
function(library_name variable file)
  execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${file} OUTPUT_VARIABLE headers
    COMMAND_ERROR_IS_FATAL ANY)
  if(NOT headers MATCHES "SONAME +([^\n]+)")
    message(FATAL_ERROR "${file} has no name for the loader")
  endif()
  set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

# logbook_test(<room> SOURCES <files> [LINKS <targets>] [PROGRAM <name>] [LABELS <label>]): a test
# program for a room, "tests_<room>" unless named otherwise, each case a test of its own named
# "<room>.<suite>.<case>". Cases with the label "long" are left out of an ordinary ./test.
function(logbook_test room)
  cmake_parse_arguments(ARG "" "PROGRAM;LABELS" "SOURCES;LINKS" ${ARGN})
  set(target tests_${room})
  if(ARG_PROGRAM)
    set(target ${ARG_PROGRAM})
  endif()
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE logbook_options logbook_test_support ${ARG_LINKS}
    GTest::gtest GTest::gmock GTest::gtest_main nlohmann_json::nlohmann_json)
  target_compile_definitions(${target} PRIVATE TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data")
  gtest_discover_tests(${target} TEST_PREFIX "${room}." DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300 LABELS "${ARG_LABELS}")
endfunction()
