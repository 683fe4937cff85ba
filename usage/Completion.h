// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "usage/Syntax.h"

namespace usage {

/// By what an argument is called ("PROFILE", "KEY=VALUE"): a command of the shell that prints what it may be,
/// a line each. In it "$root" is what was given as --root, if the program has that option, else nothing.
/// Values called DIR or BUNDLE are directories, and FILE files, without being named here.
using Candidates = std::map<std::string, std::string>;

enum class Shell { Bash, Zsh, Fish };

/// A script that has the shell complete the program's commands, options and arguments.
std::string completion(const Syntax& program, Shell shell, const Candidates& candidates);

}  // namespace usage
