// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "device/tones/SoundThemes.h"
#include "platform/foundation/ToneSource.h"

namespace device {

/// Tones that are the sounds of sound themes: "texttone:" and the name of the sound's file without its
/// extension, shown by the name that toneNames() gives it. Beside them "Calendar Alert", of our own making
/// unless a sound is called so, and shown by its name in the phone's language; and where there is no sound at
/// all, the built-in ones.
class ThemeTones : public platform::ToneSource {
  public:
    /// Larger sounds are no tones: an error for who wants to hear one.
    static constexpr std::size_t maximumBytes = std::size_t{8} << 20;

    explicit ThemeTones(SoundThemes themes);

    /// Whether there is a tone of that identifier, with these sounds.
    static bool has(std::string_view identifier, const SoundThemes::Sounds& sounds);

    /// By name, upper and lower case alike.
    std::vector<platform::ToneEntry> tones() override;
    /// A built-in tone can be heard even where it is not offered: a profile may have it from another time.
    platform::Result<platform::ToneSound> sound(std::string_view identifier) override;

  private:
    /// From a sound's name, as it stands in identifiers, to its file.
    std::map<std::string, std::filesystem::path, std::less<>> files();

    SoundThemes themes_;
};

}  // namespace device
