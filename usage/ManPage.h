// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "usage/Syntax.h"

namespace usage {

/// A section of a manual that the command line does not tell. Paragraphs are parted by an empty line.
struct Section {
    std::string title;
    std::string text;
};

/// What a manual needs beside the command line.
struct Manual {
    /// Of the program, "1.2.3".
    std::string version;
    std::vector<Section> sections;
};

/// The manual page of a program, section 1, for groff and mandoc.
std::string manPage(const Syntax& program, const Manual& manual);

}  // namespace usage
