// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "quietrix/Outcome.h"
#include "quietrix/Session.h"

namespace CLI {
class App;
}

namespace console {

/// One command in the making: what it takes, and what it does. What stood on the command line is asked for
/// when the command runs, to the letter.
class Command {
  public:
    using Words = std::function<std::vector<std::string>()>;
    using Word = std::function<std::string()>;
    using OptionalText = std::function<std::optional<std::string>()>;
    using Flag = std::function<bool()>;
    using Run = std::function<Outcome(Session& session)>;

    explicit Command(CLI::App& app) : app_(app) {}

    /// The next positional argument. An optional one that is not there is "".
    enum class Need { Required, Optional };
    Word word(const std::string& name, const std::string& description, Need need = Need::Required);
    /// All that follow.
    Words words(const std::string& name, const std::string& description, Need need = Need::Required);
    /// "--name VALUE"
    OptionalText option(const std::string& name, const std::string& value, const std::string& description);
    /// "--name"
    Flag flag(const std::string& name, const std::string& description);
    /// Called when the whole line has been understood.
    void run(Run run) { run_ = std::move(run); }

  private:
    friend class Commands;
    Words positional(const std::string& name, const std::string& description, Need need, int atMost);

    CLI::App& app_;
    Run run_;
};

/// The program's commands. Each is a file of its own with one function that adds it here, which stands in the
/// table of Commands.cpp.
class Commands {
  public:
    explicit Commands(CLI::App& program) : program_(program) {}

    Command& add(const std::string& name, const std::string& description);
    /// What the one that was asked for does; null when none was.
    const Command::Run* chosen() const;

  private:
    CLI::App& program_;
    std::deque<Command> commands_;
};

/// What was asked for.
struct CommandLine {
    std::string rootDirectory;
    Command::Run run;
    /// What the command asks for its words.
    std::shared_ptr<CLI::App> program;
};
/// The error is how the program ends at once: wrong use, or help or the version as an answer. The arguments
/// are those behind the program's name.
std::expected<CommandLine, Outcome> parsedCommandLine(std::vector<std::string> arguments);

/// Whether the arguments ask for JSON, however wrong the rest of them is.
bool asksForJSON(const std::vector<std::string>& arguments);

// One for each file of commands.
void addAdd(Commands& commands);
void addDelete(Commands& commands);
void addDoctor(Commands& commands);
void addEnable(Commands& commands);
void addExport(Commands& commands);
void addHistory(Commands& commands);
void addKeys(Commands& commands);
void addList(Commands& commands);
void addReset(Commands& commands);
void addRestore(Commands& commands);
void addSet(Commands& commands);
void addShow(Commands& commands);
void addSwitch(Commands& commands);
void addWatch(Commands& commands);

}  // namespace console
