// SPDX-License-Identifier: MIT
#include "usage/Usage.h"

namespace usage {

std::optional<std::string> asked(const std::vector<std::string>& arguments, const CLI::App& program,
                                 const Manual& manual, const Candidates& candidates) {
    if (arguments.size() != 2 || arguments[0] != "--usage") return std::nullopt;
    const std::string& form = arguments[1];
    if (form == "man") return manPage(syntaxOf(program), manual);
    if (form == "bash") return completion(syntaxOf(program), Shell::Bash, candidates);
    if (form == "zsh") return completion(syntaxOf(program), Shell::Zsh, candidates);
    if (form == "fish") return completion(syntaxOf(program), Shell::Fish, candidates);
    return std::nullopt;
}

}  // namespace usage
