// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace console {

/// How many columns of a terminal the text takes: two for East Asian wide characters and emoji, none for
/// marks that combine with the character before.
std::size_t columnsOf(std::string_view text);

/// Rows of as many cells each, in columns two blanks apart; the last column is not filled up. The texts must
/// have been made visible; `decorate` gives what is printed for a cell, of the same width.
template <class Decorate>
std::string table(const std::vector<std::vector<std::string>>& rows, Decorate decorate) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(row.size());
        for (std::size_t i = 0; i < row.size(); ++i)
            if (columnsOf(row[i]) > widths[i]) widths[i] = columnsOf(row[i]);
    }
    std::string text;
    for (std::size_t line = 0; line < rows.size(); ++line) {
        const auto& row = rows[line];
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += decorate(line, i, row[i]);
            if (i + 1 < row.size()) text.append(widths[i] - columnsOf(row[i]) + 2, ' ');
        }
        text += '\n';
    }
    return text;
}

}  // namespace console
