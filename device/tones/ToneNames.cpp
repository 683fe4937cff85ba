// SPDX-License-Identifier: MIT
#include "device/tones/ToneNames.h"

#include <algorithm>

#include "device/EscapedText.h"

namespace device {

namespace {

bool isSpelledForPeople(const std::string& sound) {
    return toneName(sound) == sound;
}

}  // namespace

std::string toneName(std::string_view sound) {
    std::string name = escapedText(sound);
    bool begins = true;
    for (char& c : name) {
        if (c == '-') c = ' ';
        if (begins && c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        begins = c == ' ';
    }
    return name;
}

ToneNames toneNames(std::vector<std::string> sounds) {
    std::ranges::sort(sounds, [](const std::string& left, const std::string& right) {
        const bool leftFirst = isSpelledForPeople(left);
        const bool rightFirst = isSpelledForPeople(right);
        return leftFirst != rightFirst ? leftFirst : left < right;
    });
    ToneNames named;
    std::vector<std::string> others;
    for (const std::string& sound : sounds) {
        if (!named.emplace(toneName(sound), sound).second) others.push_back(sound);
    }
    for (const std::string& sound : others) {
        std::string name = toneName(sound);
        do name += " (" + escapedText(sound) + ")";
        while (!named.emplace(name, sound).second);
    }
    return named;
}

}  // namespace device
