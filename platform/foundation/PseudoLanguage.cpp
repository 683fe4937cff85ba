// SPDX-License-Identifier: MIT
#include "platform/foundation/PseudoLanguage.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace platform {

namespace {

constexpr std::array<std::string_view, 26> smallLetters{"å", "ƀ", "ç", "ð", "é", "ƒ", "ĝ", "ĥ", "î",
                                                        "ĵ", "ķ", "ļ", "ɱ", "ñ", "ö", "þ", "ɋ", "ŕ",
                                                        "š", "ţ", "û", "ṽ", "ŵ", "ẋ", "ý", "ž"};
constexpr std::array<std::string_view, 26> capitalLetters{"Å", "Ɓ", "Ç", "Ð", "É", "Ƒ", "Ĝ", "Ĥ", "Î",
                                                          "Ĵ", "Ķ", "Ļ", "Ṁ", "Ñ", "Ö", "Þ", "Ɋ", "Ŕ",
                                                          "Š", "Ţ", "Û", "Ṽ", "Ŵ", "Ẋ", "Ý", "Ž"};
constexpr std::string_view vowels = "aeiouAEIOU";
/// What follows is written from the right, whatever its letters are, until what ends that.
constexpr std::string_view rightToLeftOverride = "\u202E";
constexpr std::string_view endOfOverride = "\u202C";
/// How many letters come to each ten.
constexpr std::size_t more = 4;
constexpr std::size_t each = 10;

bool isOneOf(char letter, std::string_view letters) {
    return letters.find(letter) != std::string_view::npos;
}

std::string_view accented(char letter) {
    if (letter >= 'a' && letter <= 'z') return smallLetters[static_cast<std::size_t>(letter - 'a')];
    if (letter >= 'A' && letter <= 'Z') return capitalLetters[static_cast<std::size_t>(letter - 'A')];
    return {};
}

/// How many bytes at the front of a text stand for a value that is put in there, or for the sign itself; 0
/// for a text that begins otherwise, and for a "%" that means nothing to a format.
std::size_t placeholderLength(std::string_view text) {
    if (text.empty() || text.front() != '%') return 0;
    std::size_t at = 1;
    const auto pass = [&](std::string_view letters) {
        while (at < text.size() && isOneOf(text[at], letters)) ++at;
    };
    constexpr std::string_view digits = "0123456789";
    pass(digits);
    if (at > 1 && at < text.size() && text[at] == '$') ++at;
    // A blank, which is a flag too, is more often the end of "100 %".
    pass("-+#0'");
    pass("*0123456789");
    if (at < text.size() && text[at] == '.') ++at;
    pass("*0123456789");
    pass("hlLqjzt");
    return at < text.size() && isOneOf(text[at], "@%dDiuUxXoOfFeEgGaAcCsSp") ? at + 1 : 0;
}

/// Writes a text letter by letter; what is put in later keeps the direction that it has.
class Writer {
  public:
    Writer(PseudoLanguage language, std::size_t growth) : language_(language), growth_(growth) {}

    void letter(char letter) {
        open();
        const std::string_view other = accented(letter);
        text_ += other.empty() ? std::string_view(&letter, 1) : other;
        if (growth_ == 0 || !isOneOf(letter, vowels)) return;
        text_ += other;
        --growth_;
    }
    void verbatim(std::string_view piece) {
        close();
        text_ += piece;
    }
    /// A text with few vowels is made longer by something else.
    std::string finished() {
        open();
        for (; growth_ > 0; --growth_) text_ += '~';
        close();
        return "[" + text_ + "]";
    }

  private:
    void open() {
        if (language_ == PseudoLanguage::RightToLeft && !isOpen_) text_ += rightToLeftOverride;
        isOpen_ = true;
    }
    void close() {
        if (language_ == PseudoLanguage::RightToLeft && isOpen_) text_ += endOfOverride;
        isOpen_ = false;
    }

    PseudoLanguage language_;
    std::size_t growth_;
    bool isOpen_ = false;
    std::string text_;
};

}  // namespace

std::optional<PseudoLanguage> pseudoLanguageOfTag(std::string_view tag) {
    if (tag == "en-XA") return PseudoLanguage::Accented;
    if (tag == "ar-XB") return PseudoLanguage::RightToLeft;
    return std::nullopt;
}

std::string pseudoLocalized(std::string_view text, PseudoLanguage language) {
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) return std::string(text);
    std::size_t letters = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t placeholder = placeholderLength(text.substr(at));
        if (placeholder == 0 && !accented(text[at]).empty()) ++letters;
        at += std::max<std::size_t>(placeholder, 1);
    }
    Writer writer(language, (letters * more + each - 1) / each);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t placeholder = placeholderLength(text.substr(at));
        if (placeholder > 0) {
            writer.verbatim(text.substr(at, placeholder));
        } else if (isOneOf(text[at], "\r\n")) {
            writer.verbatim(text.substr(at, 1));
        } else {
            writer.letter(text[at]);
        }
        at += std::max<std::size_t>(placeholder, 1);
    }
    return writer.finished();
}

}  // namespace platform
