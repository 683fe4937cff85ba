# SPDX-License-Identifier: MIT
# What every target of this project shares: language level, warnings as errors, and the two ways in which
# code is made: a library of one folder, and a test executable of one library.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

add_library(quietrix_options INTERFACE)
target_compile_options(quietrix_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
target_include_directories(quietrix_options INTERFACE "${CMAKE_SOURCE_DIR}")

set(QUIETRIX_PLATFORM_INTERFACE_VERSION 1)

# quietrix_library(NAME [SHARED|STATIC|OBJECT] SOURCES file… [LIBS target…])
function(quietrix_library name kind)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} ${kind} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE quietrix_options PUBLIC ${arg_LIBS})
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}")
endfunction()

# quietrix_test(NAME SOURCES file… LIBS target… [LABELS label…]): a GoogleTest executable and its ctest entry.
# A run in which no test was found fails.
function(quietrix_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE quietrix_options ${arg_LIBS} GTest::gmock GTest::gtest GTest::gtest_main)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS "unit;${arg_LABELS}"
                         FAIL_REGULAR_EXPRESSION "0 tests from 0 test suites ran")
endfunction()
