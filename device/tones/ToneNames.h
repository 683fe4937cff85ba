// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace device {

/// A sound's name for people, from that of its file without the extension: "message-new-instant" is "Message
/// New Instant". Always valid UTF-8. Different files may have one name.
std::string toneName(std::string_view sound);

/// From a name for people to the sound.
using ToneNames = std::map<std::string, std::string, std::less<>>;

/// A name for each of the sounds, no two alike, and back from the name to the sound. Of those that toneName()
/// calls alike, the one that is spelled so already ("Chord", not "chord") has the plain name, else the first;
/// the others have their own spelling added, "Chord (chord)".
ToneNames toneNames(std::vector<std::string> sounds);

}  // namespace device
