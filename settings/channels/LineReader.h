// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace settings {

/// Cuts a stream of bytes into lines. A line that grows beyond the limit is not kept but reported once, at
/// its end.
class LineReader {
  public:
    /// In bytes, without the line break.
    explicit LineReader(std::size_t longest) : longest_(longest) {}

    /// What came before a line break.
    struct Line {
        std::string text;
        /// True for a line that was too long; its text is empty then.
        bool oversized = false;
    };
    /// The lines that end within these bytes.
    std::vector<Line> feed(std::string_view bytes);
    /// What stands behind the last line break, at the end of the stream; empty when nothing does.
    std::optional<Line> finish();

  private:
    void append(std::string_view piece);
    Line take();

    std::size_t longest_;
    Line current_;
};

}  // namespace settings
