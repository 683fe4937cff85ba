// SPDX-License-Identifier: MIT
#include "device/MainSettingsFile.h"

#include <array>
#include <cerrno>
#include <ctime>
#include <utility>

#include "device/EscapedText.h"
#include "device/FileReplacement.h"
#include "device/PhonePaths.h"
#include "device/PrivateLock.h"
#include "device/UniversalTime.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/RunLoop.h"

namespace device {

using platform::Data;
using platform::PropertyListSerialization;
using platform::Result;

namespace {

constexpr double lockSeconds = 2.0;
constexpr int maximumNames = 1000;

Result<Data> freshBytes() {
    return PropertyListSerialization::dataWithPropertyList(
        platform::Dictionary{{"com.velmora.quietrix.enabled", platform::Value(false)}},
        platform::PropertyListFormat::Binary);
}

std::string today() {
    return universalTimeText(std::time(nullptr), "%Y-%m-%d");
}

/// Keeps the bytes under the first name behind the prefix that is free, and gives that name.
host::Explained<std::string> keep(const std::string& prefix, const Data& bytes) {
    std::string path = prefix;
    for (int number = 2; number <= maximumNames; ++number) {
        const auto made = host::createFile(path, bytes, host::Sync::Yes);
        if (made) return path;
        if (made.error() != EEXIST) return std::unexpected(host::message(made.error()));
        path = prefix + "-" + std::to_string(number);
    }
    return std::unexpected(quotedText(path) + " and all names before it are taken");
}

}  // namespace

Result<void> MainSettingsFile::makeFresh() {
    const Result<Data> bytes = freshBytes();
    if (!bytes) return std::unexpected(bytes.error());
    return files_.write(phonePaths::mainSettings, *bytes, platform::Write::Atomically);
}

bool MainSettingsFile::isDamaged() const {
    if (!files_.exists(phonePaths::mainSettings)) return false;
    const Result<Data> bytes = files_.read(phonePaths::mainSettings);
    return bytes && (bytes->empty() || !PropertyListSerialization::propertyListWithData(*bytes));
}

void MainSettingsFile::mend() {
    if (!isDamaged()) return;
    const auto aside = putAside();
    if (aside && aside->empty()) return;
    std::string line = "The settings file \"" + std::string(phonePaths::mainSettings) + "\" is damaged";
    if (aside) {
        line += ". It was put aside as \"" + *aside +
                "\", and a fresh one with the product switched off is in its place.";
    } else {
        line += " and could not be put aside: " + aside.error() + ".";
    }
    // Later: there is no log yet while the phone is put together.
    platform::dispatchMain([line = std::move(line)] { platform::log(line); });
}

/// The new name of what was damaged; empty when it no longer is, since another process was ahead.
host::Explained<std::string> MainSettingsFile::putAside() {
    const std::string hostPath = files_.hostPath(phonePaths::mainSettings);
    const auto location = host::followLinks(hostPath);
    if (!location) return std::unexpected(host::message(location.error()));
    // The lock of those who write it in place, too: what one of them is at is not damaged.
    const auto lock = PrivateLock::take(*location, lockSeconds);
    if (!lock) return std::unexpected(lock.error());
    if (!isDamaged()) return std::string();
    const Result<Data> damaged = files_.read(phonePaths::mainSettings);
    const Result<Data> fresh = freshBytes();
    if (!damaged || !fresh) return std::unexpected((damaged ? fresh : damaged).error().localizedDescription);
    // A copy first, and then one rename: killed at any instant, there is a file.
    auto aside = keep(location->directory + location->name + ".damaged-" + today(), *damaged);
    if (!aside) return aside;
    if (const auto replaced = host::replaceFile(hostPath, *fresh); !replaced)
        return std::unexpected(replaced.error());
    return aside;
}

}  // namespace device
