// SPDX-License-Identifier: MIT
#include "settings/recording/Recording.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/foundation/Base64.h"
#include "platform/foundation/Unicode.h"
#include "settings/channels/JSON.h"

namespace settings {

using platform::Array;
using platform::Data;
using platform::Dictionary;
using platform::failure;
using platform::Result;
using platform::Value;

namespace {

/// A hundred years: no clock is moved beyond what it can show.
constexpr std::int64_t longestTime = std::int64_t{100} * 366 * 24 * 3600 * 1000;

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};

std::string withoutBraces(const std::string& object) {
    return object.substr(1, object.size() - 2);
}

/// A field that a line must have, or may have; the error names it.
class Fields {
  public:
    explicit Fields(const Dictionary& fields) : fields_(fields) {}

    bool has(std::string_view key) const { return fields_.find(key) != fields_.end(); }
    Value value(std::string_view key) const {
        const auto field = fields_.find(key);
        return field == fields_.end() ? Value() : field->second;
    }
    Result<std::string> text(std::string_view key) const {
        const Value field = value(key);
        if (const std::string* text = field.string()) return *text;
        return wrong(key, "a text");
    }
    Result<std::int64_t> whole(std::string_view key, std::int64_t most) const {
        const Value field = value(key);
        if (const auto number = field.integer();
            number && !field.boolean() && *number >= 0 && *number <= most)
            return *number;
        return wrong(key, "a whole number from 0 to " + std::to_string(most));
    }
    Result<Data> bytes(std::string_view key) const {
        if (const std::string* text = value(key).string()) {
            if (auto data = platform::dataFromBase64(*text)) return *std::move(data);
        }
        return wrong(key, "bytes in base64");
    }
    static std::unexpected<platform::Error> wrong(std::string_view key, const std::string& expected) {
        return failure("\"" + std::string(key) + "\" must be " + expected + ".");
    }

  private:
    const Dictionary& fields_;
};

Result<Dictionary> objectOf(std::string_view line) {
    const Result<Value> json = parseJSON(line, recordedJSONDepth);
    if (!json) return std::unexpected(json.error());
    if (!json->dictionary()) return failure("The line is no JSON object.");
    return *json->dictionary();
}

Array texts(const std::vector<std::string>& list) {
    return {list.begin(), list.end()};
}

Result<std::vector<std::string>> textsOf(std::string_view key, const Value& value) {
    std::vector<std::string> list;
    if (!value.array()) return Fields::wrong(key, "a list of texts");
    for (const Value& entry : *value.array()) {
        if (!entry.string()) return Fields::wrong(key, "a list of texts");
        list.push_back(*entry.string());
    }
    return list;
}

/// Nil for a finding of another kind.
Value entryText(const Value& entry, const char* key) {
    return entry.dictionary() && entry[key].string() ? entry[key] : Value();
}

Dictionary findingFields(const MachineAnswer& finding) {
    Dictionary fields = std::visit(
        Overloaded{[](const Calendars& calendars) {
                       Array list;
                       for (const auto& calendar : calendars) {
                           list.push_back(Dictionary{{"identifier", calendar.identifier},
                                                     {"title", calendar.title},
                                                     {"account", calendar.account},
                                                     {"colour", static_cast<std::int64_t>(calendar.colour)}});
                       }
                       return Dictionary{{"calendars", std::move(list)}};
                   },
                   [](const Networks& networks) { return Dictionary{{"networks", texts(networks)}}; },
                   [](const Connected& connected) { return Dictionary{{"connected", connected}}; },
                   [](const Tones& tones) {
                       Array list;
                       for (const auto& tone : tones)
                           list.push_back(Dictionary{{"identifier", tone.identifier}, {"name", tone.name}});
                       return Dictionary{{"tones", std::move(list)}};
                   },
                   [](const DeviceRefusal& refusal) {
                       return Dictionary{{"refused", refusal.reason ? Value(*refusal.reason) : Value()}};
                   }},
        finding.what);
    if (!finding.log.empty()) fields["log"] = texts(finding.log);
    return fields;
}

Result<Calendars> calendarsOf(const Value& value) {
    const auto wrong = [] {
        return Fields::wrong("calendars",
                             "a list of objects with \"identifier\", \"title\", \"account\" and \"colour\"");
    };
    if (!value.array()) return wrong();
    Calendars calendars;
    for (const Value& entry : *value.array()) {
        const Value identifier = entryText(entry, "identifier");
        const Value title = entryText(entry, "title");
        const Value account = entryText(entry, "account");
        if (!identifier.string() || !title.string() || !account.string()) return wrong();
        const auto colour = entry["colour"].integer();
        if (!colour || *colour < 0 || *colour > 0xFFFFFF) return wrong();
        calendars.push_back(
            {*identifier.string(), *title.string(), *account.string(), static_cast<std::uint32_t>(*colour)});
    }
    return calendars;
}

Result<Tones> tonesOf(const Value& value) {
    const auto wrong = [] {
        return Fields::wrong("tones", "a list of objects with \"identifier\" and \"name\"");
    };
    if (!value.array()) return wrong();
    Tones tones;
    for (const Value& entry : *value.array()) {
        const Value identifier = entryText(entry, "identifier");
        const Value name = entryText(entry, "name");
        if (!identifier.string() || !name.string()) return wrong();
        tones.push_back({*identifier.string(), *name.string()});
    }
    return tones;
}

template <class What>
Result<MachineAnswer> findingOf(Result<What> what) {
    if (!what) return std::unexpected(what.error());
    return MachineAnswer{*std::move(what), {}};
}

Result<MachineAnswer> findingWithoutLog(const Fields& fields) {
    if (fields.has("calendars")) return findingOf(calendarsOf(fields.value("calendars")));
    if (fields.has("networks")) return findingOf(textsOf("networks", fields.value("networks")));
    if (fields.has("tones")) return findingOf(tonesOf(fields.value("tones")));
    if (fields.has("connected")) {
        const Value connected = fields.value("connected");
        if (!connected.boolean()) return Fields::wrong("connected", "true or false");
        return MachineAnswer{Connected{*connected.boolean()}, {}};
    }
    const Value refused = fields.value("refused");
    if (!fields.has("refused") || (!refused.isNil() && !refused.string()))
        return failure("\"found\" holds something that nothing here has looked for.");
    return MachineAnswer{DeviceRefusal{refused.string() ? std::optional(*refused.string()) : std::nullopt},
                         {}};
}

Result<MachineAnswers> findingsOf(const Value& value) {
    MachineAnswers findings;
    if (value.isNil()) return findings;
    if (!value.array()) return Fields::wrong("found", "a list of objects");
    for (const Value& entry : *value.array()) {
        if (!entry.dictionary()) return Fields::wrong("found", "a list of objects");
        const Fields fields(*entry.dictionary());
        Result<MachineAnswer> finding = findingWithoutLog(fields);
        if (!finding) return std::unexpected(finding.error());
        if (fields.has("log")) {
            auto log = textsOf("log", fields.value("log"));
            if (!log) return std::unexpected(log.error());
            finding->log = *std::move(log);
        }
        findings.push_back(*std::move(finding));
    }
    return findings;
}

Dictionary whatFields(const RecordedStep& step) {
    using Step = RecordedStep;
    return std::visit(
        Overloaded{[](const Step::Begun&) { return Dictionary{{"start", true}}; },
                   [](const Step::Command& command) {
                       if (platform::firstInvalidUTF8(command.line)) {
                           return Dictionary{{"commandBytes", platform::base64(Data(command.line.begin(),
                                                                                    command.line.end()))}};
                       }
                       return Dictionary{{"command", command.line}};
                   },
                   [](const Step::OversizedLine&) { return Dictionary{{"oversized", true}}; },
                   [](const Step::WaitOver&) { return Dictionary(); },
                   [](const Step::TimePassed&) { return Dictionary(); },
                   [](const Step::Notified& notified) {
                       return Dictionary{{"outside", Dictionary{{"notification", notified.name}}}};
                   },
                   [](const Step::FileChanged& file) {
                       const Value bytes = file.bytes ? Value(platform::base64(*file.bytes)) : Value();
                       return Dictionary{{"outside", Dictionary{{"file", file.path}, {"bytes", bytes}}}};
                   },
                   [](const Step::Ended&) { return Dictionary{{"end", true}}; }},
        step.what);
}

using What = decltype(RecordedStep::what);

Result<What> outsideOf(const Value& value) {
    if (!value.dictionary()) return Fields::wrong("outside", "an object");
    const Fields fields(*value.dictionary());
    if (fields.has("notification")) {
        const auto name = fields.text("notification");
        if (!name) return std::unexpected(name.error());
        return RecordedStep::Notified{*name};
    }
    const auto path = fields.text("file");
    if (!path) return std::unexpected(path.error());
    if (!path->starts_with('/')) return Fields::wrong("file", "a path of the phone");
    if (fields.has("bytes") && fields.value("bytes").isNil()) return RecordedStep::FileChanged{*path, {}};
    auto bytes = fields.bytes("bytes");
    if (!bytes) return std::unexpected(bytes.error());
    return RecordedStep::FileChanged{*path, *std::move(bytes)};
}

Result<What> whatOf(const Fields& fields) {
    for (const auto& [key, what] : {std::pair<const char*, What>{"start", RecordedStep::Begun()},
                                    {"oversized", RecordedStep::OversizedLine()},
                                    {"end", RecordedStep::Ended()}}) {
        if (!fields.has(key)) continue;
        if (fields.value(key) != Value(true)) return Fields::wrong(key, "true");
        return what;
    }
    if (fields.has("command")) {
        auto line = fields.text("command");
        if (!line) return std::unexpected(line.error());
        return RecordedStep::Command{*std::move(line)};
    }
    if (fields.has("commandBytes")) {
        const auto line = fields.bytes("commandBytes");
        if (!line) return std::unexpected(line.error());
        return RecordedStep::Command{std::string(line->begin(), line->end())};
    }
    if (fields.has("outside")) return outsideOf(fields.value("outside"));
    if (fields.has("answer")) return RecordedStep::WaitOver();
    return RecordedStep::TimePassed();
}

bool hasAnswer(const RecordedStep& step) {
    return std::holds_alternative<RecordedStep::Command>(step.what) ||
           std::holds_alternative<RecordedStep::OversizedLine>(step.what) ||
           std::holds_alternative<RecordedStep::WaitOver>(step.what);
}

Result<std::vector<std::string>> deviceOf(const Value& value) {
    if (!value.dictionary()) return Fields::wrong("device", "an object of texts");
    std::vector<std::string> pairs;
    for (const auto& [key, text] : *value.dictionary()) {
        if (!text.string()) return Fields::wrong("device", "an object of texts");
        pairs.push_back(key + "=" + *text.string());
    }
    return pairs;
}

Result<std::map<std::string, Data>> filesOf(const Value& value) {
    if (!value.dictionary()) return Fields::wrong("files", "an object");
    const Fields fields(*value.dictionary());
    std::map<std::string, Data> files;
    for (const auto& [path, text] : *value.dictionary()) {
        if (!path.starts_with('/')) return failure("\"files\" has \"" + path + "\", which is no phone path.");
        auto bytes = fields.bytes(path);
        if (!bytes) return std::unexpected(bytes.error());
        files.emplace(path, *std::move(bytes));
    }
    return files;
}

Result<void> checkFormat(const Fields& fields) {
    if (fields.value("format") != Value(RecordingStart::format))
        return failure("This is no recording of a phone: make one with \"quietrix-settings record\".");
    if (fields.value("version") != Value(RecordingStart::version)) {
        return failure("The recording is of version " + fields.value("version").description() +
                       ", and this program reads version " + std::to_string(RecordingStart::version) +
                       ": replay it with the program that made it, or record it anew.");
    }
    return {};
}

}  // namespace

std::string noAnswerWithin(std::chrono::seconds patience) {
    return std::string(noAnswer) + " within " + std::to_string(patience.count()) + " s";
}

std::optional<std::chrono::seconds> hangOf(std::string_view died) {
    // Any text may come; more than an hour is nobody's patience.
    constexpr std::int64_t most = 3600;
    if (!died.starts_with(noAnswer)) return std::nullopt;
    const std::size_t digits = died.find_first_of("0123456789");
    std::int64_t seconds = 0;
    for (const char digit : died.substr(std::min(digits, died.size()))) {
        if (digit < '0' || digit > '9') break;
        seconds = std::min(seconds * 10 + (digit - '0'), most);
    }
    return std::chrono::seconds(std::max<std::int64_t>(seconds, 1));
}

std::string lineText(const RecordingStart& start) {
    const Dictionary head{{"program", start.program},
                          {"seed", static_cast<std::int64_t>(start.seed)},
                          {"clock", start.clock},
                          {"zone", start.zone},
                          {"bundle", start.bundle}};
    Dictionary device;
    for (const std::string& pair : start.device) {
        const std::size_t equals = pair.find('=');
        device[pair.substr(0, equals)] = pair.substr(equals + 1);
    }
    Dictionary files;
    for (const auto& [path, bytes] : start.files) files[path] = platform::base64(bytes);
    // What it is, before all else, for those who look into it.
    return "{\"format\":" + jsonText(Value(RecordingStart::format)) +
           ",\"version\":" + std::to_string(RecordingStart::version) + "," + withoutBraces(jsonText(head)) +
           ",\"device\":" + jsonText(device) + ",\"files\":" + jsonText(files) + "}";
}

std::string lineText(const RecordedStep& step) {
    std::string line = "{\"time\":" + std::to_string(step.time);
    if (const std::string what = withoutBraces(jsonText(whatFields(step))); !what.empty()) line += "," + what;
    if (!step.found.empty()) {
        Array found;
        for (const MachineAnswer& finding : step.found) found.push_back(findingFields(finding));
        line += ",\"found\":" + jsonText(found);
    }
    if (step.answer) line += ",\"answer\":" + *step.answer;
    if (step.died) line += ",\"died\":" + jsonText(*step.died);
    return line + "}";
}

Result<RecordingStart> parseRecordingStart(std::string_view line) {
    const Result<Dictionary> object = objectOf(line);
    if (!object)
        return failure("This is no recording of a phone: make one with \"quietrix-settings record\".");
    const Fields fields(*object);
    if (const Result<void> checked = checkFormat(fields); !checked) return std::unexpected(checked.error());
    RecordingStart start;
    for (const auto& [key, text] : {std::pair{"program", &start.program},
                                    {"clock", &start.clock},
                                    {"zone", &start.zone},
                                    {"bundle", &start.bundle}}) {
        auto given = fields.text(key);
        if (!given) return std::unexpected(given.error());
        *text = *std::move(given);
    }
    const auto seed = fields.whole("seed", std::numeric_limits<std::uint32_t>::max());
    if (!seed) return std::unexpected(seed.error());
    start.seed = static_cast<std::uint32_t>(*seed);
    auto device = deviceOf(fields.value("device"));
    if (!device) return std::unexpected(device.error());
    start.device = *std::move(device);
    auto files = filesOf(fields.value("files"));
    if (!files) return std::unexpected(files.error());
    start.files = *std::move(files);
    return start;
}

Result<ReadStep> readRecordedStep(std::string_view line) {
    const Result<Dictionary> object = objectOf(line);
    if (!object) return std::unexpected(object.error());
    const Fields fields(*object);
    ReadStep read;
    RecordedStep& step = read.step;
    const auto time = fields.whole("time", longestTime);
    if (!time) return std::unexpected(time.error());
    step.time = *time;
    auto what = whatOf(fields);
    if (!what) return std::unexpected(what.error());
    step.what = *std::move(what);
    auto found = findingsOf(fields.value("found"));
    if (!found) return std::unexpected(found.error());
    step.found = *std::move(found);
    if (fields.has("died")) {
        auto died = fields.text("died");
        if (!died) return std::unexpected(died.error());
        if (fields.has("answer")) return failure("There is an \"answer\" of a program that has \"died\".");
        step.died = *std::move(died);
    }
    if (!fields.has("answer")) return read;
    if (!hasAnswer(step)) return failure("\"answer\" stands where nothing was asked.");
    read.answer = fields.value("answer");
    if (!read.answer.dictionary()) return Fields::wrong("answer", "an object");
    return read;
}

Result<RecordedStep> parseRecordedStep(std::string_view line) {
    Result<ReadStep> read = readRecordedStep(line);
    if (!read) return std::unexpected(read.error());
    if (!read->answer.isNil()) read->step.answer = jsonText(read->answer);
    return std::move(read->step);
}

}  // namespace settings
