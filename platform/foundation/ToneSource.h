// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace platform {

/// A sound to choose.
struct ToneEntry {
    /// Kind, colon, name: "texttone:Chord".
    std::string identifier;
    std::string name;

    bool operator==(const ToneEntry&) const = default;
};

/// A sound file's bytes, and their media type ("audio/ogg").
struct ToneSound {
    std::string mediaType;
    Data bytes;
};

/// The sounds of the phone. Main thread.
class ToneSource {
  public:
    virtual ~ToneSource() = default;

    /// By name, one entry a name; "texttone:Calendar Alert" is always there.
    virtual std::vector<ToneEntry> tones() = 0;
    /// What the tone sounds like. The error names the tone: there is none of that identifier, or its file
    /// cannot be read.
    virtual Result<ToneSound> sound(std::string_view identifier) = 0;
};

}  // namespace platform
