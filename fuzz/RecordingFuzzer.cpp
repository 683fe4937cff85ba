// SPDX-License-Identifier: MIT
// Any bytes as a recording. What can be read is written and read again as the same, and an error is one line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "settings/recording/RecordingReader.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

template <class T>
bool isSound(const platform::Result<T>& result) {
    if (result) return true;
    const std::string& error = result.error().localizedDescription;
    require(error.starts_with("Line ") && error.find('\n') == std::string::npos);
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream stream(std::string(reinterpret_cast<const char*>(data), size));
    settings::RecordingReader reader(stream);
    const auto start = reader.start();
    if (!isSound(start)) return 0;
    require(settings::parseRecordingStart(lineText(*start)) == start);
    for (;;) {
        const auto step = reader.next();
        if (!isSound(step) || !*step) return 0;
        require(settings::parseRecordedStep(lineText(**step)) == **step);
    }
}
