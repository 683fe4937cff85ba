// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "settings/watching/BuildErrors.h"

namespace settings {
namespace {

TEST(BuildErrors, firstErrorIn_compiler_namesThePlace) {
    const auto error = firstErrorIn(
        "[1/3] Building CXX object a.o\nFAILED: a.o\n/usr/bin/g++ -c a.cpp\n"
        "In file included from a.cpp:1:\na.h:3:1: warning: unused\n"
        "\033[01m\033[Ka.cpp:12:7:\033[m\033[K \033[01;31m\033[Kerror: \033[m\033[K'x' was not declared: "
        "really\n"
        "b.cpp:1:1: error: the second\n");
    EXPECT_EQ(error, (BuildError{"a.cpp", 12, 7, "'x' was not declared: really"}));
    EXPECT_EQ(firstErrorIn("a.cpp:2:10: fatal error: x.h: No such file or directory\r\n"),
              (BuildError{"a.cpp", 2, 10, "x.h: No such file or directory"}));
}

TEST(BuildErrors, firstErrorIn_linker_namesTheSymbol) {
    EXPECT_EQ(firstErrorIn("/usr/bin/ld: a.o: in function `main':\n"
                           "/usr/bin/ld: /src/a.cpp:5: undefined reference to `f()'\n"
                           "collect2: error: ld returned 1 exit status\n"),
              (BuildError{"/src/a.cpp", 5, 0, "undefined reference to `f()'"}));
    EXPECT_EQ(firstErrorIn("a.cpp:(.text+0x5): undefined reference to `f()'\n"),
              (BuildError{"a.cpp", 0, 0, "undefined reference to `f()'"}));
}

TEST(BuildErrors, firstErrorIn_otherTools_arePickedUp) {
    EXPECT_EQ(firstErrorIn("CMake Error at CMakeLists.txt:7 (include):\n  could not find:\n\n    x\n"),
              (BuildError{"CMakeLists.txt", 7, 0, "could not find:"}));
    EXPECT_EQ(
        firstErrorIn("✘ [ERROR] Expected \";\" but found \"x\"\n\n    src/app.ts:9:4:\n      9 │ let x x\n"),
        (BuildError{"src/app.ts", 9, 4, "Expected \";\" but found \"x\""}));
    EXPECT_EQ(firstErrorIn("src/app.ts(3,14): error TS2322: Type\n"),
              (BuildError{"src/app.ts", 3, 14, "TS2322: Type"}));
    EXPECT_EQ(firstErrorIn("ninja: error: loading 'build.ninja'\n"),
              (BuildError{"", 0, 0, "ninja: loading 'build.ninja'"}));
}

TEST(BuildErrors, firstErrorIn_aVagueOneBeforeACompilers_yieldsToIt) {
    EXPECT_EQ(firstErrorIn("make: error: stopped\na.cpp:1:2: error: here\n"),
              (BuildError{"a.cpp", 1, 2, "here"}));
}

TEST(BuildErrors, firstErrorIn_withoutOne_isNothing) {
    EXPECT_EQ(firstErrorIn(""), std::nullopt);
    EXPECT_EQ(firstErrorIn("0 errors\na.cpp:1:2: note: error-free\n"), std::nullopt);
    EXPECT_EQ(firstErrorIn("x: error: " + std::string(100'000, 'x')), std::nullopt);
    EXPECT_EQ(lastLineOf("one\ntwo\n\n  \n"), "two");
    EXPECT_EQ(lastLineOf(""), "");
}

}  // namespace
}  // namespace settings
