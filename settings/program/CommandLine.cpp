// SPDX-License-Identifier: MIT
#include "settings/program/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <limits>
#include <optional>
#include <ratio>
#include <system_error>
#include <utility>

#include "settings/program/ProgramUsage.h"

namespace settings {

namespace {

constexpr const char* programName = "quietrix-settings";
/// Weeks of them.
constexpr std::uint64_t mostSteps = 1'000'000'000;
constexpr const char* versionText = "quietrix-settings " QUIETRIX_VERSION;

/// What was written, before it is checked.
struct Given {
    std::optional<std::string> root;
    std::optional<std::string> bundle;
    std::vector<std::string> device;
    std::uint16_t port = 0;
    bool newSecret = false;
    std::optional<double> idleMinutes;
    std::optional<unsigned> openPatience;
    WatchArguments watch;
    std::string recording;
    bool update = false;
    CheckArguments check;
    ExploreArguments explore;
};

/// In words of our own: the library names neither what was given nor what may be.
template <class Number>
auto numberFrom(Number least, Number most, const std::string& range) {
    return [=](const std::string& text) {
        Number number{};
        const char* const end = text.data() + text.size();
        const auto read = std::from_chars(text.data(), end, number);
        const bool isTaken = read.ec == std::errc() && read.ptr == end && number >= least && number <= most;
        return isTaken ? std::string() : "\"" + text + "\" is not " + range;
    };
}

void addBundle(CLI::App& subcommand, Given& given) {
    subcommand
        .add_option("--bundle", given.bundle,
                    "The bundle to open; without this the one that came with the program")
        ->type_name("DIR");
    subcommand.set_version_flag("--version", versionText);
}

void addRecording(CLI::App& subcommand, Given& given, const char* description) {
    subcommand.add_option("FILE", given.recording, description)->required()->type_name("");
}

void addCheckOptions(CLI::App& check, Given& given) {
    check
        .add_option("BUNDLE", given.bundle,
                    "The bundle to look at; without this the one that came with the program")
        ->type_name("");
    check
        .add_option("--root", given.root,
                    "A phone's files, to look at the bundle with their data too; only read")
        ->type_name("DIR");
    check.add_option("--device", given.device, "How the phone is equipped; may be given again")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false);
    check.add_flag("--timings", given.check.timings, "Tells what takes longer than 100 ms too");
    check.add_flag("--json", given.check.json, "Prints one JSON object instead of lines for people");
    check.add_option("--junit", given.check.junit, "Writes the results of a test suite to that file too")
        ->type_name("FILE");
    check
        .add_option("--accepted", given.check.accepted,
                    "The findings that stay, with reasons: lines of JSON or a property list")
        ->type_name("FILE");
    check.set_version_flag("--version", versionText);
}

void addExploreOptions(CLI::App& explore, Given& given) {
    ExploreArguments& wanted = given.explore;
    explore
        .add_option("BUNDLE", given.bundle,
                    "The bundle to use; without this the one that came with the program")
        ->type_name("");
    explore
        .add_option("--root", given.root,
                    "A phone's files to begin with; only read, without this a new phone's")
        ->type_name("DIR");
    explore.add_option("--device", given.device, "How the phone is equipped; may be given again")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false);
    explore.add_option("--steps", wanted.steps, "How many steps at most; without this 10000")
        ->type_name("N")
        ->check(numberFrom<std::uint64_t>(1, mostSteps, "a whole number from 1 to 1000000000"));
    explore.add_option("--seed", wanted.seed, "What the choices follow from; without this another each time")
        ->type_name("S")
        ->check(numberFrom<std::uint32_t>(0, std::numeric_limits<std::uint32_t>::max(),
                                          "a whole number from 0 to 4294967295"));
    explore.add_option("--patience", wanted.patience, "After so long a step hangs; without this 20 seconds")
        ->type_name("SECONDS")
        ->check(numberFrom(1, 3600, "a whole number from 1 to 3600"));
    explore
        .add_option("--out", wanted.out,
                    "Where a failure's recording is written; without this explore-SEED.rec here")
        ->type_name("FILE");
    explore.add_option("--trace", wanted.trace, "Writes each step to that file, as a line of a recording")
        ->type_name("FILE");
    explore.add_flag("--json", wanted.json, "Prints one JSON object instead of lines for people");
    explore.set_version_flag("--version", versionText);
}

void addOptions(CLI::App& subcommand, Given& given) {
    subcommand
        .add_option("--root", given.root,
                    "The phone's files: a directory, made and filled when it is not there")
        ->type_name("DIR");
    addBundle(subcommand, given);
    subcommand.add_option("--device", given.device, "How the phone is equipped; may be given again")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false);
}

EarlyEnd wrongUse(std::string reason) {
    std::ranges::replace(reason, '\n', ' ');
    return {2, std::string(programName) + ": " + reason + "\n"};
}

std::expected<CommandLine, EarlyEnd> checked(Subcommand subcommand, const Given& given,
                                             const device::ProgramPaths& paths) {
    CommandLine line;
    line.subcommand = subcommand;
    line.port = given.port;
    line.newSecret = given.newSecret;
    if (given.idleMinutes) {
        line.patience = std::chrono::round<std::chrono::milliseconds>(
            std::chrono::duration<double, std::ratio<60>>(*given.idleMinutes));
    }
    if (given.openPatience) line.openPatience = std::chrono::seconds(*given.openPatience);
    line.watch = given.watch;
    for (const std::string& directory : line.watch.sources) {
        std::error_code error;
        if (!std::filesystem::is_directory(directory, error))
            return std::unexpected(wrongUse("The sources \"" + directory + "\" are not a directory."));
    }
    line.recording = given.recording;
    line.update = given.update;
    line.check = given.check;
    line.explore = given.explore;

    // A replay has a root of its own, and nobody's own phone is looked at for mistakes unless it is named.
    const bool looksOnly = subcommand == Subcommand::Check || subcommand == Subcommand::Explore;
    const bool needsRoot =
        subcommand != Subcommand::Replay && subcommand != Subcommand::View && (!looksOnly || given.root);
    const auto root = given.root || !needsRoot ? given.root : device::defaultRootDirectory();
    if (needsRoot && (!root || root->empty()))
        return std::unexpected(wrongUse("There is no root directory: give one with --root."));
    line.rootDirectory = root.value_or("");

    const auto bundle = given.bundle || subcommand == Subcommand::View ? given.bundle : paths.bundle();
    // What is shown was drawn long ago.
    if (!bundle && subcommand == Subcommand::View) return line;
    if (!bundle) return std::unexpected(wrongUse("No bundle came with the program: give one with --bundle."));
    std::error_code error;
    if (!std::filesystem::is_directory(*bundle, error)) {
        return std::unexpected(wrongUse("The bundle \"" + *bundle + "\" is not a directory."));
    }
    line.bundleDirectory = *bundle;

    if (subcommand == Subcommand::Explore) {
        const auto chosen = std::ranges::find_if(given.device, device::DeviceOptions::isOfTheMachine);
        if (chosen != given.device.end())
            return std::unexpected(
                wrongUse("\"" + *chosen + "\": what an explored phone finds on its machine is made up."));
    }
    auto options = device::DeviceOptions::parse(given.device);
    if (!options) return std::unexpected(wrongUse(options.error().localizedDescription));
    line.device = std::move(*options);
    return line;
}

}  // namespace

std::expected<CommandLine, EarlyEnd> parseCommandLine(std::vector<std::string> arguments,
                                                      const device::ProgramPaths& paths) {
    Given given;
    CLI::App program("The phone's Settings application, with a bundle opened in it.", programName);
    program.require_subcommand(1);
    program.set_version_flag("--version", versionText);
    CLI::App& drive =
        *program.add_subcommand("drive", "Takes commands as lines of JSON and answers each with a line");
    CLI::App& serve =
        *program.add_subcommand("serve", "Shows the screens in a browser, on this machine only");
    CLI::App& opened = *program.add_subcommand(
        "open", "Shows the page of the server that runs, or of one that is started for it, in the browser");
    opened
        .add_option("--root", given.root,
                    "The phone's files: a directory, made and filled when it is not there")
        ->type_name("DIR");
    opened
        .add_option("--patience", given.openPatience,
                    "So long it waits for another open, and for the server; without this 60 seconds")
        ->type_name("SECONDS")
        ->check(CLI::Range(1u, 3600u));
    opened.set_version_flag("--version", versionText);
    CLI::App& recorded =
        *program.add_subcommand("record", "Does what drive does, and writes down all that passes");
    CLI::App& replayed = *program.add_subcommand(
        "replay", "Does again what was recorded, and tells which answer is different first");
    for (CLI::App* subcommand : {&drive, &serve, &recorded}) addOptions(*subcommand, given);
    addRecording(recorded, given, "The new recording");
    addBundle(replayed, given);
    addRecording(replayed, given, "The recording");
    replayed.add_flag("--update", given.update, "Puts the answers as they are now into the recording");
    CLI::App& viewed = *program.add_subcommand(
        "view", "Shows in a browser what was recorded, as the phone was at each moment");
    viewed
        .add_option("--bundle", given.bundle, "The bundle to take images from; without this one of its name")
        ->type_name("DIR");
    viewed.set_version_flag("--version", versionText);
    addRecording(viewed, given, "The recording");
    CLI::App& check = *program.add_subcommand(
        "check",
        "Looks for mistakes on every screen of a bundle: 1 when there are any, 2 when it cannot be opened");
    addCheckOptions(check, given);
    CLI::App& explore = *program.add_subcommand(
        "explore",
        "Uses a bundle at random and looks what breaks: 1 when something does, 2 when it cannot begin");
    addExploreOptions(explore, given);
    for (CLI::App* each : {&program, &drive, &serve, &recorded, &check, &explore})
        each->footer("Device keys:\n" + device::DeviceOptions::help());
    serve.add_option("--port", given.port, "The port to listen on; without this any free one")
        ->type_name("N")
        ->check(numberFrom<std::uint16_t>(0, std::numeric_limits<std::uint16_t>::max(),
                                          "a port, a whole number from 0 to 65535"));
    serve.add_flag("--new-secret", given.newSecret,
                   "Shuts out pages that are still open from an earlier start with the same root and port");
    CLI::Option* const idle =
        serve
            .add_option("--idle", given.idleMinutes,
                        "Ends when nobody has had a page open for that many minutes; without this it stays")
            ->type_name("MINUTES")
            ->check(numberFrom(0.001, 525600.0, "a number of minutes from 0.001 to 525600"));

    CLI::Option* const watch = serve
                                   .add_flag("--watch", given.watch.isOn,
                                             "Starts itself anew, at the same screen, when the bundle or the "
                                             "program has changed")
                                   ->excludes(idle);
    CLI::Option* const build =
        serve
            .add_option("--build", given.watch.build,
                        "With --watch: the command that builds it, run when sources have changed")
            ->type_name("COMMAND")
            ->needs(watch);
    serve
        .add_option("--sources", given.watch.sources,
                    "With --build: a directory of sources; without this the present one; may be given again")
        ->type_name("DIR")
        ->allow_extra_args(false)
        ->needs(build);
    // For what the watcher itself starts.
    serve.add_flag("--watched", given.watch.isWatched)->group("")->excludes(watch);

    if (auto text = usage::asked(arguments, program, programManual(), programCandidates()))
        return std::unexpected(EarlyEnd{0, *std::move(text)});
    // The library takes them from the end.
    std::ranges::reverse(arguments);
    try {
        program.parse(std::move(arguments));
    } catch (const CLI::CallForVersion& version) {
        return std::unexpected(EarlyEnd{0, std::string(version.what()) + "\n"});
    } catch (const CLI::CallForHelp&) {
        const auto chosen = program.get_subcommands();
        return std::unexpected(
            EarlyEnd{0, chosen.empty() ? program.help("", CLI::AppFormatMode::All) : chosen.front()->help()});
    } catch (const CLI::RequiredError& error) {
        if (!program.get_subcommands().empty()) return std::unexpected(wrongUse(error.what()));
        const auto unknown = program.remaining();
        return std::unexpected(
            wrongUse(unknown.empty()
                         ? "A command is needed: drive, serve, open, record, replay, view, check or explore."
                         : "There is no command \"" + unknown.front() +
                               "\": drive, serve, open, record, replay, view, check or explore."));
    } catch (const CLI::Error& error) {
        return std::unexpected(wrongUse(error.what()));
    }
    const Subcommand chosen = serve.parsed()      ? Subcommand::Serve
                              : opened.parsed()   ? Subcommand::Open
                              : recorded.parsed() ? Subcommand::Record
                              : replayed.parsed() ? Subcommand::Replay
                              : viewed.parsed()   ? Subcommand::View
                              : check.parsed()    ? Subcommand::Check
                              : explore.parsed()  ? Subcommand::Explore
                                                  : Subcommand::Drive;
    return checked(chosen, given, paths);
}

}  // namespace settings
