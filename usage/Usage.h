// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "usage/Completion.h"
#include "usage/ManPage.h"

namespace CLI {
class App;
}

namespace usage {

/// What the build asks a program for: "--usage man", "--usage bash", "--usage zsh" or "--usage fish" as its
/// only arguments (those behind its name) give its manual page or the completion for that shell. Nothing for
/// all other arguments. It is no option, so that the help, the manual and the completions do not tell it.
std::optional<std::string> asked(const std::vector<std::string>& arguments, const CLI::App& program,
                                 const Manual& manual, const Candidates& candidates);

}  // namespace usage
