// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace usage {

/// An option or an argument that stands for itself, as its program declared it.
struct Argument {
    /// "--root", "-h"; for one that stands for itself "FILE".
    std::vector<std::string> names;
    std::string description;
    /// What stands for its value: "DIR", "KEY=VALUE"; "" for a flag. Of one that stands for itself its name.
    std::string value;
    bool isPositional = false;
    bool isRequired = false;
    /// Whether it may be given again.
    bool repeats = false;

    bool isFlag() const { return value.empty(); }
};

/// A program, or one of its commands.
struct Syntax {
    std::string name;
    std::string description;
    std::vector<Argument> options;
    std::vector<Argument> positionals;
    std::vector<Syntax> commands;
    /// What its help ends with.
    std::string footer;
};

/// What the command line takes. What its help leaves out is left out here too, and of a command's options
/// those that the program itself has.
Syntax syntaxOf(const CLI::App& program);

}  // namespace usage
