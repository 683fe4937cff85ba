// SPDX-License-Identifier: MIT
#include "device/SettableDeviceFacts.h"

#include <array>
#include <random>
#include <string_view>

#include "device/PhonePaths.h"
#include "platform/foundation/Hexadecimal.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/RunLoop.h"

namespace device {

namespace {

using platform::Dictionary;
using platform::Result;

constexpr std::array<const char*, 3> keys{"serialNumber", "UDID", "model"};

std::string randomText(std::string_view letters, std::size_t length) {
    std::random_device random;
    std::uniform_int_distribution<std::size_t> index(0, letters.size() - 1);
    std::string text;
    while (text.size() < length) text += letters[index(random)];
    return text;
}

Dictionary makeUp(Idiom idiom) {
    // Serial numbers leave out the letters that are easily taken for digits.
    return {{"serialNumber", randomText("0123456789CDFGHJKLMNPQRTVWXY", 12)},
            {"UDID", randomText(platform::hexadecimalDigits, 40)},
            {"model",
             (idiom == Idiom::Pad ? "Pad" : "Phone") + randomText("6789", 1) + "," + randomText("1234", 1)}};
}

/// The facts that are kept; empty when there is no file yet.
Result<Dictionary> readFacts(const platform::FileSystem& files, std::string_view path) {
    if (!files.exists(path)) return Dictionary();
    const auto data = files.read(path);
    if (!data) return std::unexpected(data.error());
    const auto list = platform::PropertyListSerialization::propertyListWithData(*data);
    const std::string file = "The file \"" + std::string(path) + "\" ";
    if (!list) return platform::failure(file + "could not be read: " + list.error().localizedDescription);
    for (const char* key : keys) {
        if ((*list)[key].stringOr().empty()) return platform::failure(file + "has no text \"" + key + "\".");
    }
    return *list->dictionary();
}

Result<void> writeFacts(platform::FileSystem& files, std::string_view path, const Dictionary& facts) {
    using platform::PropertyListSerialization;
    const auto data =
        PropertyListSerialization::dataWithPropertyList(facts, platform::PropertyListFormat::Binary);
    if (!data) return std::unexpected(data.error());
    return files.write(path, *data, platform::Write::Atomically);
}

/// Reads what is kept, or keeps what is made up. The lock settles which of two processes that start on a new
/// root at the same time makes it up.
Result<Dictionary> keptFacts(platform::FileSystem& files, std::string_view path, const Dictionary& madeUp) {
    constexpr double lockSeconds = 2.0;
    if (Result<Dictionary> kept = readFacts(files, path); !kept || !kept->empty()) return kept;
    if (auto made = files.createDirectory(path.substr(0, path.rfind('/'))); !made)
        return std::unexpected(made.error());
    const auto lock = files.lockExclusively(path, lockSeconds);
    if (!lock) return std::unexpected(lock.error());
    if (Result<Dictionary> kept = readFacts(files, path); !kept || !kept->empty()) return kept;
    if (auto written = writeFacts(files, path, madeUp); !written) return std::unexpected(written.error());
    return madeUp;
}

}  // namespace

SettableDeviceFacts::SettableDeviceFacts(const DeviceOptions& options,
                                         const std::shared_ptr<platform::FileSystem>& files)
    : systemVersion_(options.systemVersion),
      idiom_(options.idiom),
      scale_(options.scale),
      languages_(options.languages),
      darkMode_(options.darkMode) {
    Dictionary facts;
    if (!options.serialNumber || !options.UDID || !options.model) {
        facts = makeUp(idiom_);
        if (Result<Dictionary> kept = keptFacts(*files, phonePaths::deviceFacts, facts)) {
            facts = std::move(*kept);
        } else {
            // Later: the device that these facts are of has the log.
            platform::dispatchMain([reason = kept.error().localizedDescription] {
                platform::log("The device's serial number, UDID and model are made up for this run only. " +
                              reason);
            });
        }
    }
    serialNumber_ = options.serialNumber.value_or(facts["serialNumber"].stringOr());
    UDID_ = options.UDID.value_or(facts["UDID"].stringOr());
    model_ = options.model.value_or(facts["model"].stringOr());
}

}  // namespace device
