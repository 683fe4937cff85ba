// SPDX-License-Identifier: MIT
#include "settings/commands/PhoneCommands.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "device/DatagramTransport.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/NotificationCenter.h"
#include "settings/application/StoredFiles.h"
#include "settings/application/TopScreen.h"

namespace settings {

using platform::Dictionary;
using platform::failure;
using platform::Result;
using platform::Value;

namespace {

Result<std::string> notificationName(const CommandFields& fields) {
    Result<std::string> name = fields.text("name");
    if (!name) return name;
    constexpr std::size_t longest = device::DatagramTransport::maximumNameLength;
    if (name->empty() || name->size() > longest || name->find('\0') != std::string::npos) {
        return failure("\"name\" must be 1 to " + std::to_string(longest) +
                       " bytes without a null character.");
    }
    return name;
}

/// A device value as the command line has it: texts as they are, lists with commas.
std::optional<std::string> optionText(const Value& value) {
    if (const auto* text = value.string()) return *text;
    if (const auto boolean = value.boolean()) return *boolean ? "true" : "false";
    if (value.number()) return value.description();
    if (value.array() == nullptr) return std::nullopt;
    std::string list;
    for (const Value& entry : *value.array()) {
        if (entry.string() == nullptr) return std::nullopt;
        list += (list.empty() ? "" : ",") + *entry.string();
    }
    return list;
}

/// Longer would look like a program that hangs.
constexpr std::int64_t longestDelay = 60'000;

Result<void> beginFault(device::Faults& faults, device::Fault fault, const CommandFields& fields) {
    if (fault == device::Fault::Slow) {
        const Result<std::int64_t> delay = fields.index("milliseconds");
        if (!delay) return std::unexpected(delay.error());
        if (*delay > longestDelay)
            return failure("\"milliseconds\" must be " + std::to_string(longestDelay) + " at most.");
        faults.setDelay(std::chrono::milliseconds(*delay));
    }
    faults.begin(fault);
    return {};
}

}  // namespace

Outcome<void> postNotification(Application& /*application*/, const CommandFields& fields) {
    const Result<std::string> name = notificationName(fields);
    if (!name) return std::unexpected(name.error());
    platform::DarwinNotificationCenter::shared().post(*name);
    return {};
}

Outcome<void> postLocally(Application& /*application*/, const CommandFields& fields) {
    const Result<std::string> name = notificationName(fields);
    if (!name) return std::unexpected(name.error());
    platform::NotificationCenter::defaultCenter().postNotificationName_object_userInfo(*name, nullptr, {});
    return {};
}

Outcome<void> killProcess(Application& /*application*/, const CommandFields& fields) {
    const Result<std::string> process = fields.text("process");
    if (!process) return std::unexpected(process.error());
    const auto& processes = platform::Device::current().processes;
    if (!processes || !processes->killProcessByName(*process))
        return failure("The phone has no process \"" + *process + "\".");
    return {};
}

Outcome<Dictionary> lookAtFiles(Application& application, const CommandFields& /*fields*/) {
    const auto files = application.phone() ? application.phone()->files() : platform::Device::current().files;
    if (!files) return failure("This phone has no files.");
    return Dictionary{{"files", storedFiles(application.bundle(), *files)}};
}

Outcome<Dictionary> changeDevice(Application& application, const CommandFields& fields) {
    const Value given = fields.value("set");
    if (given.dictionary() == nullptr) return failure("\"set\" must be an object of device keys.");
    std::vector<std::string> pairs;
    for (const auto& [key, value] : *given.dictionary()) {
        const auto text = optionText(value);
        if (!text) return failure("The value of \"" + key + "\" must be a text.");
        pairs.push_back(key + "=" + *text);
    }
    const auto ended = application.changeDevice(pairs);
    if (!ended) return std::unexpected(ended.error());
    if (!*ended) return Dictionary();
    return Dictionary{{"pathEnded", **ended}};
}

Outcome<void> changeFaults(Application& application, const CommandFields& fields) {
    if (!application.phone()) return failure("This phone has no faults.");
    device::Faults& faults = application.phone()->faults();
    if (fields.has("clear")) {
        const Result<bool> clear = fields.boolean("clear");
        if (!clear) return std::unexpected(clear.error());
        if (*clear) {
            faults.clear();
            return {};
        }
    }
    const Result<std::string> kind = fields.text("kind");
    if (!kind) return std::unexpected(kind.error());
    const auto fault = device::Faults::named(*kind);
    if (!fault) return failure("There is no fault \"" + *kind + "\".");
    const Result<bool> on = fields.has("on") ? fields.boolean("on") : true;
    if (!on) return std::unexpected(on.error());
    if (*on) {
        if (const Result<void> begun = beginFault(faults, *fault, fields); !begun)
            return std::unexpected(begun.error());
    } else {
        faults.end(*fault);
    }
    return {};
}

Outcome<void> switchDarkMode(Application& /*application*/, const CommandFields& fields) {
    const Result<bool> on = fields.boolean("on");
    if (!on) return std::unexpected(on.error());
    const auto& facts = platform::Device::current().facts;
    if (!facts) return failure("This device has no dark mode.");
    if (facts->isDarkMode() == *on) return {};
    facts->setDarkMode(*on);
    // Cells took their colours when they were made. The rows themselves stay what they are.
    for (const auto& list : shownLists()) {
        const auto rows = list->specifiers();
        for (const auto& specifier : *rows) list->reloadSpecifier(specifier);
    }
    return {};
}

Outcome<void> advanceClock(Application& application, const CommandFields& fields) {
    const Result<double> seconds = fields.seconds("seconds");
    if (!seconds) return std::unexpected(seconds.error());
    if (!application.clock()) return failure("The clock is the system's: it moves by itself.");
    return device::advanceRunning(*application.clock(), *seconds);
}

Outcome<void> reopenBundle(Application& application, const CommandFields& /*fields*/) {
    application.reopen();
    return {};
}

}  // namespace settings
