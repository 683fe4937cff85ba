// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

#include "device/ProgramStart.h"
#include "tests/device/Child.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::errorOf;
using testing_support::Child;

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST(ProgramStart, standardDescriptorsThatAreClosed_areTakenByNothingElse) {
    Child child({"hold"});
    // Each of the three as its peer has found it: end of input, and an error for each output.
    EXPECT_EQ(child.wait(), 0);
}

TEST(ProgramStart, descriptors_areCountedAndGivenBack) {
    const auto before = openDescriptors();
    EXPECT_TRUE(device::checkDescriptors(20));
    EXPECT_EQ(openDescriptors(), before);
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    rlimit few = limit;
    few.rlim_cur = 16;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    const auto enough = device::checkDescriptors(20);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    ASSERT_FALSE(enough);
    EXPECT_NE(errorOf(enough).find("20 are needed"), std::string::npos);
    EXPECT_EQ(openDescriptors(), before);
}

TEST(ProgramStart, memory_isAskedForAsAWhole) {
    EXPECT_TRUE(device::checkMemory(1 << 20));
    const auto enough = device::checkMemory(std::size_t{1} << 60);
    ASSERT_FALSE(enough);
    EXPECT_EQ(errorOf(enough), "There is too little memory.");
}

TEST(ProgramStart, memoryThatIsOut_endsTheProcessWithTheStatus) {
    Child child({"exhaust"});
    EXPECT_EQ(child.wait(), 7);
}

}  // namespace
