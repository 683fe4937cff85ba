// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryListFault.h"

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

namespace platform {

namespace {

using Problem = BinaryListFault::Problem;

struct Sentence {
    Problem problem;
    /// "#" stands for the fault's number, "$" for it as a byte in hexadecimal.
    std::string_view text;
};

constexpr std::array sentences{
    Sentence{Problem::UnknownVersion, "the binary property list is of an unknown version"},
    Sentence{Problem::OffsetWidth, "the width of offsets is not 1 to 8"},
    Sentence{Problem::ReferenceWidth, "the width of references is not 1 to 8"},
    Sentence{Problem::TableOutside, "the offset table lies outside the file"},
    Sentence{Problem::ObjectCount, "the number of objects does not fit the offset table"},
    Sentence{Problem::TooManyObjects, "there are more objects than the file has room for"},
    Sentence{Problem::RootMissing, "the root is an object that does not exist"},
    Sentence{Problem::ObjectOutside, "an object lies outside the file"},
    Sentence{Problem::ObjectMissing, "a reference names an object that does not exist"},
    Sentence{Problem::HoldsItself, "a container contains itself"},
    Sentence{Problem::NestsTooDeep, "containers nest more than # deep"},
    Sentence{Problem::Null, "a null (marker 0x00) is no property-list value"},
    Sentence{Problem::Set, "a set (marker $) is no property-list value"},
    Sentence{Problem::UnknownMarker, "the marker $ is unknown"},
    Sentence{Problem::IntegerCutOff, "an integer is cut off"},
    Sentence{Problem::RealCutOff, "a real is cut off"},
    Sentence{Problem::DateCutOff, "a date is cut off"},
    Sentence{Problem::UidCutOff, "a UID is cut off"},
    Sentence{Problem::SizeMissing, "a count is missing"},
    Sentence{Problem::SizeNoInteger, "a count is no integer"},
    Sentence{Problem::SizeNegative, "a count is negative"},
    Sentence{Problem::SizeCutOff, "an integer that counts is cut off"},
    Sentence{Problem::SizeTooLarge, "an integer that counts of 16 bytes does not fit 8"},
    Sentence{Problem::ReachesBeyond, "an object of # items reaches beyond the file"},
    Sentence{Problem::IntegerTooLarge, "an integer of 16 bytes does not fit 8"},
    Sentence{Problem::UidTooLarge, "a UID does not fit 8 bytes"},
    Sentence{Problem::ForeignByte, "an ASCII string holds the byte $"},
    Sentence{Problem::HalfSurrogate, "a string holds half a surrogate pair"},
    Sentence{Problem::KeyNoString, "a dictionary's key is no string"},
    Sentence{Problem::SharedBytes, "the objects share their bytes and hold far more than the file"},
    Sentence{Problem::Unfolds, "the references unfold to far more than the file holds"},
};

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < sentences.size(); ++i) {
        if (sentences[i].problem != static_cast<Problem>(i + 1)) return false;
    }
    return static_cast<std::size_t>(Problem::Unfolds) == sentences.size();
}
static_assert(Problem::TooShort == Problem() && isInOrder(),
              "there is a sentence for each problem, in their order");

std::string hexadecimal(std::uint64_t byte) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "0x%02x", static_cast<unsigned>(byte & 0xFF));
    return text.data();
}

}  // namespace

Error BinaryListFault::error() const {
    if (problem == Problem::TooShort) {
        return {"The binary property list is too short to be one: it has only " + std::to_string(number) +
                " bytes."};
    }
    std::string text = "The binary property list is damaged at byte " + std::to_string(at) + ": ";
    for (const char character : sentences[static_cast<std::size_t>(problem) - 1].text) {
        if (character == '#') {
            text += std::to_string(number);
        } else if (character == '$') {
            text += hexadecimal(number);
        } else {
            text += character;
        }
    }
    return {text + '.'};
}

}  // namespace platform
