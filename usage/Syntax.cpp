// SPDX-License-Identifier: MIT
#include "usage/Syntax.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

namespace usage {

namespace {

Argument argumentOf(const CLI::Option& option) {
    Argument argument;
    argument.description = option.get_description();
    argument.isPositional = option.get_positional();
    argument.isRequired = option.get_required();
    argument.repeats = option.get_expected_max() > 1;
    if (argument.isPositional) {
        argument.names = {option.get_name(true)};
        argument.value = argument.names.front();
        return argument;
    }
    for (const std::string& name : option.get_snames()) argument.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) argument.names.push_back("--" + name);
    if (option.get_expected_max() > 0) argument.value = option.get_type_name();
    return argument;
}

/// `own` is left out where the program around has the same.
bool isAmong(const std::vector<Argument>& options, const Argument& own) {
    return std::ranges::any_of(options, [&](const Argument& each) { return each.names == own.names; });
}

Syntax syntaxOf(const CLI::App& program, const std::vector<Argument>& around) {
    Syntax syntax;
    syntax.name = program.get_name();
    syntax.description = program.get_description();
    syntax.footer = program.get_footer();
    for (const CLI::Option* option : program.get_options()) {
        if (option->get_group().empty()) continue;
        Argument argument = argumentOf(*option);
        if (isAmong(around, argument)) continue;
        (argument.isPositional ? syntax.positionals : syntax.options).push_back(std::move(argument));
    }
    for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
        if (!command->get_group().empty()) syntax.commands.push_back(syntaxOf(*command, syntax.options));
    }
    return syntax;
}

}  // namespace

Syntax syntaxOf(const CLI::App& program) {
    return syntaxOf(program, {});
}

}  // namespace usage
