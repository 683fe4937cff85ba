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

/// An error names its line, if the bytes have any.
template <class T>
bool isSound(const platform::Result<T>& result, bool hasLines) {
    if (result) return true;
    const std::string& error = result.error().localizedDescription;
    require(error.starts_with("Line ") == hasLines && error.find('\n') == std::string::npos);
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const bool hasLines = bytes.find('\n') != std::string::npos;
    std::istringstream stream(bytes);
    settings::RecordingReader reader(stream);
    const auto start = reader.start();
    if (!isSound(start, hasLines)) return 0;
    require(settings::parseRecordingStart(lineText(*start)) == start);
    for (;;) {
        const auto step = reader.next();
        if (!isSound(step, hasLines) || !*step) return 0;
        require(settings::parseRecordedStep(lineText(**step)) == **step);
    }
}
