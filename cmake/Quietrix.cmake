# SPDX-License-Identifier: MIT
# What every target of this project shares: language level, warnings as errors, and the two ways in which
# code is made: a library of one folder, and a test executable of one library.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Without these the cache leaves out whatever uses a precompiled header, which is nearly all.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "${CCACHE_PROGRAM}")
endif()

add_library(quietrix_options INTERFACE)
target_compile_options(quietrix_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # With optimisation this version sees these where there are none, in std::optional and std::string themselves.
    target_compile_options(quietrix_options INTERFACE
        -Wno-maybe-uninitialized -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
endif()
target_include_directories(quietrix_options INTERFACE "${CMAKE_SOURCE_DIR}")
if(CCACHE_PROGRAM AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(quietrix_options INTERFACE -fpch-preprocess)
endif()

# The one of platform/foundation/Bundle.h, which bundles name in their Info property lists.
file(STRINGS "${CMAKE_SOURCE_DIR}/platform/foundation/Bundle.h" interface_version REGEX "platformInterfaceVersion = [0-9]+;")
if(NOT interface_version MATCHES "= ([0-9]+)")
    message(FATAL_ERROR "platform/foundation/Bundle.h has no interface version.")
endif()
set(QUIETRIX_PLATFORM_INTERFACE_VERSION "${CMAKE_MATCH_1}")

# What nearly every source includes is parsed once. Only for g++: the fuzzers' clang sees what a source forgets to include.
add_library(quietrix_library_headers STATIC "${CMAKE_BINARY_DIR}/library-headers.cpp")
file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/library-headers.cpp" CONTENT "namespace quietrix {}\n")
target_link_libraries(quietrix_library_headers PRIVATE quietrix_options)
target_precompile_headers(quietrix_library_headers PRIVATE
    <algorithm> <cstdint> <expected> <functional> <map> <memory> <optional> <string> <string_view> <unordered_map>
    <utility> <variant> <vector>)

# quietrix_library(NAME [SHARED|STATIC|OBJECT] SOURCES file… [LIBS target…])
function(quietrix_library name kind)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} ${kind} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE quietrix_options PUBLIC ${arg_LIBS})
    target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}>")
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        set_target_properties(${name} PROPERTIES DEFINE_SYMBOL "")
        target_precompile_headers(${name} REUSE_FROM quietrix_library_headers)
    endif()
endfunction()

# The tests of what has threads, which run under the thread sanitizer too.
add_custom_target(threaded-tests)

# quietrix_test(NAME SOURCES file… LIBS target… [LABELS label…]): a GoogleTest executable and its ctest entry.
# A run in which no test was found fails. The label "threads" adds it to what the thread sanitizer runs. What every
# test includes is compiled once: parsing it anew is half the time of a test's compilation. That is also how every test
# comes to print values in words.
function(quietrix_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE quietrix_options ${arg_LIBS} GTest::gmock GTest::gtest GTest::gtest_main)
    if(NOT TARGET quietrix_test_headers)
        # An executable, as the tests are: the headers must have been compiled with the tests' own flags.
        file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/test-headers.cpp" CONTENT "int main() {}\n")
        add_executable(quietrix_test_headers "${CMAKE_BINARY_DIR}/test-headers.cpp")
        target_link_libraries(quietrix_test_headers PRIVATE quietrix_options GTest::gmock GTest::gtest)
        target_precompile_headers(quietrix_test_headers PRIVATE
            <algorithm> <chrono> <expected> <filesystem> <functional> <map> <memory> <optional> <string>
            <string_view> <unordered_map> <variant> <vector> <gmock/gmock.h> <gtest/gtest.h>
            "${CMAKE_SOURCE_DIR}/tests/doubles/PrintedValue.h")
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_precompile_headers(${name} REUSE_FROM quietrix_test_headers)
    else()
        target_compile_options(${name} PRIVATE -include "${CMAKE_SOURCE_DIR}/tests/doubles/PrintedValue.h")
    endif()
    add_test(NAME ${name} COMMAND ${name})
    if("threads" IN_LIST arg_LABELS)
        add_dependencies(threaded-tests ${name})
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS "unit;${arg_LABELS}"
                         FAIL_REGULAR_EXPRESSION "0 tests from 0 test suites ran")
endfunction()
