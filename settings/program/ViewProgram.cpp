// SPDX-License-Identifier: MIT
#include "settings/program/ViewProgram.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "device/DeviceOptions.h"
#include "settings/program/Progress.h"
#include "settings/recording/RecordedMoments.h"
#include "settings/recording/RecordedRoot.h"
#include "settings/recording/RecordingImages.h"
#include "settings/recording/RecordingView.h"

namespace settings {

namespace fs = std::filesystem;
using platform::Result;

namespace {

/// Of the root's files those that a screen may have shown.
RootFiles imagesOf(const RecordingStart& start) {
    RootFiles images;
    for (const auto& [path, bytes] : start.files) {
        if (path.ends_with(".png")) images.emplace(path, bytes);
    }
    return images;
}

/// The directory of the bundle that was recorded, where it is known; images come from nowhere else.
std::optional<std::string> bundleOf(const CommandLine& line, const RecordingStart& start,
                                    const device::ProgramPaths& paths) {
    if (!line.bundleDirectory.empty()) return line.bundleDirectory;
    auto own = paths.bundle();
    if (own && fs::path(*own).filename() == start.bundle) return own;
    return std::nullopt;
}

double scaleOf(const RecordingStart& start) {
    const auto options = device::DeviceOptions::parse(start.device);
    return options ? options->scale : device::DeviceOptions().scale;
}

}  // namespace

Result<void> runView(const CommandLine& line, const device::ProgramPaths& paths) {
    std::error_code error;
    Progress progress("view", fs::file_size(line.recording, error));
    auto moments = RecordedMoments::read(line.recording, [&](std::uint64_t bytes) { progress.show(bytes); });
    if (!moments) return std::unexpected(moments.error());
    const RecordingStart& start = moments->start();
    std::vector<std::string> directories;
    if (const auto bundle = bundleOf(line, start, paths)) directories.push_back(*bundle);
    // Without room for them the screens are shown without these images.
    const auto root = TemporaryRoot::create(imagesOf(start));
    if (root) directories.push_back(root->path());
    RecordingImages images(directories, scaleOf(start));
    return RecordingView(*std::move(moments), std::move(images)).run(paths.page().value_or(""));
}

}  // namespace settings
