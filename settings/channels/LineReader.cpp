// SPDX-License-Identifier: MIT
#include "settings/channels/LineReader.h"

#include <utility>

namespace settings {

std::vector<LineReader::Line> LineReader::feed(std::string_view bytes) {
    std::vector<Line> lines;
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        append(bytes.substr(0, end));
        lines.push_back(take());
        bytes.remove_prefix(end + 1);
    }
    append(bytes);
    return lines;
}

std::optional<LineReader::Line> LineReader::finish() {
    if (current_.text.empty() && !current_.oversized) return std::nullopt;
    return take();
}

void LineReader::append(std::string_view piece) {
    if (current_.oversized) return;
    if (current_.text.size() + piece.size() > longest_) {
        current_ = {{}, true};
        return;
    }
    current_.text += piece;
}

LineReader::Line LineReader::take() {
    return std::exchange(current_, {});
}

}  // namespace settings
