// SPDX-License-Identifier: MIT
// An index.theme as anybody could have left it: whatever it says, nothing outside the themes is looked at.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "device/tones/SoundThemeIndex.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

bool staysBelow(const std::filesystem::path& path) {
    if (path.empty() || path.is_absolute()) return false;
    for (const auto& piece : path) {
        if (piece == ".." || piece == "." || piece.empty()) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto index = device::SoundThemeIndex::parse({reinterpret_cast<const char*>(data), size});
    if (!index) {
        require(!index.error().localizedDescription.empty());
        return 0;
    }
    require(index->directories.size() <= device::SoundThemeIndex::maximumNames);
    require(index->inherits.size() <= device::SoundThemeIndex::maximumNames);
    for (const auto& directory : index->directories) require(staysBelow(directory));
    for (const auto& theme : index->inherits) require(staysBelow(theme) && !theme.contains('/'));
    return 0;
}
