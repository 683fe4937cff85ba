// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "device/FaultLog.h"
#include "device/tones/SoundThemeIndex.h"

namespace device {

/// The sound files of all the themes in some directories, put together as one theme is with those it inherits
/// from: the first that has a sound of a name has it for all.
///
/// A theme is a folder with an "index.theme" in one of the directories (or the directory itself, if it has
/// one); folders of the same name in the other directories add to it. The themes come in the order of their
/// names, each followed by those it inherits from, "freedesktop" after all others; last come sound files that
/// lie in the directories themselves. Within a folder a name is taken by NAME.disabled (there is no such
/// sound, here and in all that follow), NAME.oga, NAME.ogg or NAME.wav, in this order.
class SoundThemes {
  public:
    /// From a sound's name (its file's, without the extension) to the file.
    using Sounds = std::map<std::string, std::filesystem::path, std::less<>>;

    /// Sounds beyond this number are left out, with a log line.
    static constexpr std::size_t maximumSounds = 4096;

    /// Host paths, the preferred one first.
    explicit SoundThemes(std::vector<std::filesystem::path> directories);

    /// Where the user's and the machine's themes are: "sounds" in $XDG_DATA_HOME and $XDG_DATA_DIRS.
    static std::vector<std::filesystem::path> systemDirectories();

    /// As they are now. What cannot be read is left out, with one log line until it changes.
    Sounds sounds();

    /// What could not be read, and which state of the file that was.
    struct Fault {
        std::string sentence;
        std::string state;
    };
    struct Found {
        Sounds sounds;
        std::vector<Fault> faults;
    };
    /// The same without a log line.
    Found look() const;

  private:
    /// The present question: names that were decided, a disabled one by an empty path.
    struct Search;

    std::set<std::string> themeNames(Search& search) const;
    std::optional<SoundThemeIndex> index(const std::string& theme, Search& search) const;
    void addTheme(const std::string& theme, Search& search) const;
    void addFolder(const std::filesystem::path& folder, Search& search) const;
    std::filesystem::path themeFolder(const std::filesystem::path& directory, const std::string& theme) const;

    std::vector<std::filesystem::path> directories_;
    FaultLog faults_;
};

}  // namespace device
