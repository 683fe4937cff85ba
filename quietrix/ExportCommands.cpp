// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "device/Descriptor.h"
#include "device/EscapedText.h"
#include "device/FileReplacement.h"
#include "device/HostFile.h"
#include "quietrix/Commands.h"
#include "quietrix/ProfilesDocument.h"

namespace console {

namespace {

constexpr const char* standardStream = "-";

struct Place {
    std::string file;
    std::optional<std::string> format;
};

std::expected<DocumentFormat, Refusal> formatOf(const Place& place) {
    if (place.format) {
        if (const auto format = documentFormat(*place.format);
            format && place.format->find('.') == std::string::npos)
            return *format;
        return refusal(Status::WrongUse,
                       "There is no format " + device::quotedText(*place.format) + ": json, plist or xml.");
    }
    if (place.file == standardStream) return DocumentFormat::JSON;
    if (const auto format = documentFormat(place.file)) return *format;
    return refusal(Status::WrongUse, "The name " + device::quotedText(place.file) +
                                         " does not tell the format: end it with .json, .plist or .xml, or "
                                         "give --format.");
}

std::unexpected<Refusal> failed(const std::string& file, const std::string& action,
                                const std::string& reason) {
    return refusal(Status::Failed,
                   "The file " + device::quotedText(file) + " cannot be " + action + ": " + reason + ".");
}

/// Of several hundred thousand profiles.
constexpr std::size_t largestDocument = std::size_t{256} << 20;

/// Also of a pipe, which a shell may put in a file's place and which may have no end.
std::expected<platform::Data, Refusal> contentsOf(const std::string& file) {
    device::Descriptor opened;
    int descriptor = STDIN_FILENO;
    if (file != standardStream) {
        opened = device::Descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
        if (!opened) return failed(file, "read", device::host::message(errno));
        descriptor = opened.get();
    }
    platform::Data data;
    std::array<std::uint8_t, 65536> piece{};
    for (;;) {
        const ssize_t count = read(descriptor, piece.data(), piece.size());
        if (count == 0) return data;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) {
            // Another process that shares it has made it one that does not wait.
            pollfd input{descriptor, POLLIN, 0};
            poll(&input, 1, -1);
            continue;
        }
        if (count < 0) return failed(file, "read", device::host::message(errno));
        data.insert(data.end(), piece.begin(), piece.begin() + count);
        if (data.size() > largestDocument) return failed(file, "read", "it is larger than 256 MB");
    }
}

std::expected<void, Refusal> writeTo(const std::string& file, const platform::Data& data) {
    struct stat status{};
    const bool isStream = stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
    if (!isStream) {
        const auto written = device::host::replaceFile(file, data);
        if (!written) return failed(file, "written", written.error());
        return {};
    }
    // A device or a pipe is never replaced by a file.
    const device::Descriptor opened(open(file.c_str(), O_WRONLY | O_CLOEXEC));
    if (!opened) return failed(file, "written", device::host::message(errno));
    const auto written = device::host::writeAll(opened.get(), data);
    if (!written) return failed(file, "written", device::host::message(written.error()));
    return {};
}

Outcome exportProfiles(Session& session, Place place) {
    if (place.file.empty()) place.file = standardStream;
    const auto format = formatOf(place);
    if (!format) return std::unexpected(format.error());
    const auto profiles = session.profiles();
    if (!profiles) return std::unexpected(profiles.error());
    const auto document = documentOf(*profiles, *format);
    if (!document) return refusal(Status::Failed, document.error().localizedDescription);
    if (place.file == standardStream)
        return Answer{.text = std::string(document->begin(), document->end()), .isData = true};
    if (const auto written = writeTo(place.file, *document); !written)
        return std::unexpected(written.error());
    return Answer{.text = std::to_string(profiles->size()) +
                          (profiles->size() == 1 ? " profile" : " profiles") + " exported to " +
                          device::visibleText(place.file) + "\n",
                  .json = {{"exported", profiles->size()}, {"file", device::escapedText(place.file)}}};
}

struct ImportOptions {
    bool isDryRun;
    Import::Others others;
};

Outcome importProfiles(Session& session, const Place& place, ImportOptions options) {
    const auto format = formatOf(place);
    if (!format) return std::unexpected(format.error());
    const auto bytes = contentsOf(place.file);
    if (!bytes) return std::unexpected(bytes.error());
    const auto document = ProfilesDocument::parse(*bytes, *format);
    if (!document)
        return refusal(Status::Failed, "The file " + device::quotedText(place.file) +
                                           " cannot be imported. " + document.error().localizedDescription);
    ChangeReport report;
    const auto plan = [&](const Session::Records& present) {
        Import import = Import::plan(*document, present, options.others);
        report = std::move(import.report);
        if (options.isDryRun) import.changes.clear();
        return import.changes;
    };
    const auto done = session.change(plan, Session::NewRoot::Make);
    if (!done) return std::unexpected(done.error());
    Answer answer{.text = report.text(), .json = report.json()};
    if (!report.refused.empty()) {
        answer.status = Status::Failed;
        answer.note = "Nothing was changed, since not every profile can be taken.";
    }
    return answer;
}

}  // namespace

void addExport(Commands& commands) {
    const std::string formats = "json, plist or xml, when the file's name does not tell";
    Command& exporting = commands.add("export", "Writes all profiles to a file, or to standard output");
    const auto target = exporting.word("FILE", "The file, or -", Command::Need::Optional);
    const auto targetFormat = exporting.option("--format", "FORMAT", formats);
    exporting.run([=](Session& session) { return exportProfiles(session, {target(), targetFormat()}); });

    Command& importing =
        commands.add("import", "Adds and updates the profiles of a file: all of them or none");
    const auto source = importing.word("FILE", "The file, or -");
    const auto sourceFormat = importing.option("--format", "FORMAT", formats);
    const auto isDryRun = importing.flag("--dry-run", "Only tells what would be done");
    const auto replaces = importing.flag("--replace", "Deletes the profiles that the file does not name");
    importing.run([=](Session& session) {
        return importProfiles(session, {source(), sourceFormat()},
                              {isDryRun(), replaces() ? Import::Others::Go : Import::Others::Stay});
    });
}

}  // namespace console
