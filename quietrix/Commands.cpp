// SPDX-License-Identifier: MIT
#include "quietrix/Commands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <utility>

#include "device/EscapedText.h"
#include "device/ProgramPaths.h"
#include "quietrix/ProgramUsage.h"

namespace console {

namespace {

constexpr const char* programName = "quietrix";
constexpr const char* versionText = "quietrix " QUIETRIX_VERSION "\n";
const std::string jsonFlag = "--json";
constexpr int any = 1 << 20;
/// Stands before words that the library would take for something else: lists in brackets, "++".
constexpr char mark = '\x01';

// In the order of the help.
constexpr std::array adders{&addList,    &addShow,   &addAdd,    &addSet,   &addEnable,
                            &addDelete,  &addSwitch, &addExport, &addWatch, &addHistory,
                            &addRestore, &addReset,  &addDoctor, &addKeys};

std::vector<std::string> marked(std::vector<std::string> arguments) {
    for (std::string& argument : arguments) {
        const bool isList = argument.starts_with('[') && argument.ends_with(']');
        if (isList || argument == "++" || argument.starts_with(mark)) argument.insert(0, 1, mark);
    }
    return arguments;
}

std::string unmarked(std::string word) {
    if (word.starts_with(mark)) word.erase(0, 1);
    return word;
}

std::unexpected<Outcome> wrongUse(std::string reason) {
    if (!reason.ends_with('.')) reason += '.';
    return std::unexpected(Outcome(refusal(Status::WrongUse, std::move(reason))));
}

/// In the library's words, where they are plain.
std::string reasonOf(const CLI::Error& error) {
    constexpr std::string_view valueOfFlag = " was given a disallowed flag override";
    std::string text = error.what();
    if (!text.ends_with(valueOfFlag)) return text;
    return "--" + text.substr(0, text.size() - valueOfFlag.size()) + " takes no value but true";
}

std::unexpected<Outcome> told(std::string text) {
    return std::unexpected(Outcome(Answer{.text = std::move(text), .json = nullptr, .isData = true}));
}

}  // namespace

Command::Words Command::positional(const std::string& name, const std::string& description, Need need,
                                   int atMost) {
    CLI::Option* option = app_.add_option(name)->description(description)->type_name("");
    option->expected(1, atMost)->required(need == Need::Required);
    option->allow_extra_args(atMost > 1);
    return [option] {
        // Not as any type: that would read signs of its own into them.
        std::vector<std::string> words = option->results();
        std::ranges::transform(words, words.begin(), unmarked);
        return words;
    };
}

Command::Word Command::word(const std::string& name, const std::string& description, Need need) {
    return [words = positional(name, description, need, 1)] {
        const auto given = words();
        return given.empty() ? std::string() : given.front();
    };
}

Command::Words Command::words(const std::string& name, const std::string& description, Need need) {
    return positional(name, description, need, any);
}

Command::OptionalText Command::option(const std::string& name, const std::string& value,
                                      const std::string& description) {
    CLI::Option* option = app_.add_option(name)->description(description)->type_name(value)->expected(1);
    return [option] {
        return option->empty() ? std::nullopt : std::optional(unmarked(option->results().back()));
    };
}

Command::Flag Command::flag(const std::string& name, const std::string& description) {
    CLI::Option* option = app_.add_flag(name)->description(description)->disable_flag_override();
    return [option] { return !option->empty(); };
}

Command& Commands::add(const std::string& name, const std::string& description) {
    CLI::App& app = *program_.add_subcommand(name, description);
    // Options of the program may stand behind the command too.
    app.fallthrough();
    return commands_.emplace_back(app);
}

const Command::Run* Commands::chosen() const {
    const auto found =
        std::ranges::find_if(commands_, [](const Command& each) { return each.app_.parsed(); });
    return found == commands_.end() ? nullptr : &found->run_;
}

bool asksForJSON(const std::vector<std::string>& arguments) {
    const auto end = std::ranges::find(arguments, "--");
    return std::any_of(arguments.begin(), end, [](const std::string& argument) {
        return argument == jsonFlag || argument == jsonFlag + "=true";
    });
}

std::expected<CommandLine, Outcome> parsedCommandLine(std::vector<std::string> arguments) {
    const auto program = std::make_shared<CLI::App>("The phone's profiles, from a shell.", programName);
    program->set_help_flag("--help,-h", "Tells this and ends");
    program->set_version_flag("--version", versionText, "Tells the version and ends");
    program->require_subcommand(1);
    std::string root;
    CLI::Option* rootOption = program->add_option("--root", root, "The phone's files: a directory");
    rootOption->type_name("DIR");
    program->add_flag(jsonFlag)
        ->description("Prints one JSON document instead of text")
        ->disable_flag_override();
    Commands commands(*program);
    for (const auto add : adders) add(commands);
    program->footer(
        "PROFILE is an identifier, the beginning of one, or a whole title.\n"
        "Ends with 0 when it is done, 1 when it failed, 2 for wrong use, 3 when there is no such profile or "
        "more\n"
        "than one, 4 when it was not confirmed.");

    if (auto text = usage::asked(arguments, *program, programManual(), programCandidates()))
        return told(*std::move(text));
    arguments = marked(std::move(arguments));
    // The library takes them from the end.
    std::ranges::reverse(arguments);
    try {
        program->parse(std::move(arguments));
    } catch (const CLI::CallForVersion&) {
        return told(versionText);
    } catch (const CLI::CallForHelp&) {
        const auto chosen = program->get_subcommands();
        return told(chosen.empty() ? program->help() : chosen.front()->help());
    } catch (const CLI::Error& error) {
        const auto unknown = program->remaining();
        const bool isAboutCommand = program->get_subcommands().empty() &&
                                    (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr ||
                                     dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr);
        if (!isAboutCommand) return wrongUse(reasonOf(error));
        if (unknown.empty()) return wrongUse("Which command? --help lists them");
        return wrongUse("There is no command " + device::quotedText(unmarked(unknown.front())) +
                        "; --help lists them");
    }
    if (rootOption->empty()) root = device::defaultRootDirectory().value_or("");
    if (root.empty()) return wrongUse("There is no root directory: give one with --root");
    return CommandLine{root, *commands.chosen(), program};
}

}  // namespace console
