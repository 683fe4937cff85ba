// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "device/ConfiguredLibraries.h"
#include "tests/doubles/MemoryFileSystem.h"

namespace {

using device::ConfiguredLibraries;
using device::StatusBarLibrary;

constexpr const char* statusBar = "/Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib";

TEST(ConfiguredLibraries, statusBarLibrary_isThereWhenConfigured) {
    const auto files = std::make_shared<doubles::MemoryFileSystem>();
    EXPECT_TRUE(ConfiguredLibraries(StatusBarLibrary::Present, files).canOpen(statusBar));
    files->put(statusBar, "");
    EXPECT_FALSE(ConfiguredLibraries(StatusBarLibrary::Absent, files).canOpen(statusBar));
}

TEST(ConfiguredLibraries, anyOther_isThereWhenItsFileIs) {
    const auto files = std::make_shared<doubles::MemoryFileSystem>();
    const ConfiguredLibraries libraries(StatusBarLibrary::Present, files);
    EXPECT_FALSE(libraries.canOpen("/Library/other.dylib"));
    files->put("/Library/other.dylib", "");
    EXPECT_TRUE(libraries.canOpen("/Library/other.dylib"));
    EXPECT_FALSE(libraries.canOpen("/Library"));
}

}  // namespace
