// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace settings {

/// The images that recorded states name, found by their files' names alone: nothing of a bundle is opened.
/// Any thread.
class RecordingImages {
  public:
    /// Host paths of directories to look in, with all that is below them; of two images of one name the first
    /// one stands. `scale` is the phone's.
    RecordingImages(const std::vector<std::string>& directories, double scale);

    /// The host path of the image that a state has under this name; empty where it is not known.
    std::optional<std::string> file(std::string_view name) const;

  private:
    void add(const std::string& directory, double scale);

    std::map<std::string, std::string, std::less<>> files_;
};

}  // namespace settings
