// SPDX-License-Identifier: MIT
#include "device/ConfiguredLibraries.h"

#include <utility>

namespace device {

namespace {

constexpr std::string_view statusBarPath = "/Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib";

}  // namespace

ConfiguredLibraries::ConfiguredLibraries(StatusBarLibrary statusBar,
                                         std::shared_ptr<const platform::FileSystem> files)
    : statusBar_(statusBar), files_(std::move(files)) {}

bool ConfiguredLibraries::canOpen(std::string_view path) const {
    if (path == statusBarPath) return statusBar_ == StatusBarLibrary::Present;
    return files_->exists(path) && !files_->isDirectory(path);
}

}  // namespace device
