// SPDX-License-Identifier: MIT
#include "device/tones/BuiltInTones.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>

namespace device {

namespace {

constexpr std::uint32_t samplesPerSecond = 22050;
constexpr std::uint32_t bytesPerSample = 2;

/// A struck note that dies away.
struct Note {
    double startSeconds;
    double hertz;
    /// After so long it is at a third of its loudness.
    double decaySeconds;
};

constexpr std::array bell{Note{0.0, 880.0, 0.35}, Note{0.0, 2217.5, 0.12}, Note{0.0, 1760.0, 0.2}};
constexpr std::array calendarAlert{Note{0.0, 1046.5, 0.1}, Note{0.14, 1318.5, 0.1}, Note{0.28, 1568.0, 0.25}};
constexpr std::array chime{Note{0.0, 1318.5, 0.2}, Note{0.25, 1046.5, 0.3}};
constexpr std::array chord{Note{0.0, 523.25, 0.3}, Note{0.0, 659.25, 0.3}, Note{0.0, 783.99, 0.3}};
constexpr std::array echo{Note{0.0, 987.77, 0.07}, Note{0.2, 987.77, 0.05}, Note{0.4, 987.77, 0.04}};
constexpr std::array pulse{Note{0.0, 740.0, 0.04}, Note{0.1, 740.0, 0.04}, Note{0.3, 740.0, 0.04},
                           Note{0.4, 740.0, 0.04}};

struct Tone {
    std::string_view name;
    std::span<const Note> notes;
};

constexpr std::array tones{Tone{"Bell", bell},   Tone{calendarAlertTone, calendarAlert},
                           Tone{"Chime", chime}, Tone{"Chord", chord},
                           Tone{"Echo", echo},   Tone{"Pulse", pulse}};

double loudness(const Note& note, double second) {
    const double since = second - note.startSeconds;
    if (since < 0) return 0;
    // A note that sets in at once cracks.
    constexpr double attackSeconds = 0.004;
    return std::min(1.0, since / attackSeconds) * std::exp(-since / note.decaySeconds) *
           std::sin(2 * std::numbers::pi * note.hertz * since);
}

void append(platform::Data& data, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) data.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void append(platform::Data& data, std::string_view text) {
    data.insert(data.end(), text.begin(), text.end());
}

platform::Data waveHeader(std::uint32_t sampleBytes) {
    platform::Data data;
    append(data, "RIFF");
    append(data, 36 + sampleBytes, 4);
    append(data, "WAVEfmt ");
    append(data, 16, 4);
    constexpr std::uint32_t pulseCode = 1;
    constexpr std::uint32_t channels = 1;
    append(data, pulseCode, 2);
    append(data, channels, 2);
    append(data, samplesPerSecond, 4);
    append(data, samplesPerSecond * bytesPerSample, 4);
    append(data, bytesPerSample, 2);
    append(data, 8 * bytesPerSample, 2);
    append(data, "data");
    append(data, sampleBytes, 4);
    return data;
}

platform::Data waveFile(std::span<const Note> notes) {
    double seconds = 0;
    // After four times the decay nothing is heard any more.
    for (const Note& note : notes) seconds = std::max(seconds, note.startSeconds + 4 * note.decaySeconds);
    const auto samples = static_cast<std::uint32_t>(seconds * samplesPerSecond);
    platform::Data data = waveHeader(samples * bytesPerSample);
    for (std::uint32_t sample = 0; sample < samples; ++sample) {
        double sum = 0;
        for (const Note& note : notes) sum += loudness(note, static_cast<double>(sample) / samplesPerSecond);
        const double level = sum / static_cast<double>(notes.size()) * 0.8 * 32767;
        append(data, static_cast<std::uint32_t>(std::lround(level)), bytesPerSample);
    }
    return data;
}

}  // namespace

std::vector<std::string> builtInToneNames() {
    std::vector<std::string> names;
    names.reserve(std::size(tones));
    for (const Tone& tone : tones) names.emplace_back(tone.name);
    return names;
}

std::optional<platform::Data> builtInTone(std::string_view name) {
    const auto tone = std::ranges::find(tones, name, &Tone::name);
    if (tone == tones.end()) return std::nullopt;
    return waveFile(tone->notes);
}

}  // namespace device
