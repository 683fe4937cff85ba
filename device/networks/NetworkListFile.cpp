// SPDX-License-Identifier: MIT
#include "device/networks/NetworkListFile.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "device/EscapedText.h"
#include "device/FileHead.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/PropertyList.h"

namespace device {

namespace {

/// Tens of thousands of networks; whoever gives more has given the wrong file.
constexpr std::size_t maximumSize = std::size_t{4} << 20;

std::vector<std::string> cannotBeUsed(const std::string& path, const std::string& reason) {
    platform::log("The networks file " + quotedText(path) + " cannot be used: " + reason);
    return {};
}

/// Spelled as by the network manager's source, so that a profile keeps its networks whichever lists them;
/// "" for what is no name.
std::string nameOf(const platform::Value& ssid) {
    if (const std::string* text = ssid.string()) return escapedText(*text);
    if (const platform::Data* bytes = ssid.data())
        return escapedText({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
    return {};
}

}  // namespace

NetworkListFile::NetworkListFile(std::string path, Missing missing)
    : path_(std::move(path)), missing_(missing) {}

bool NetworkListFile::isConnected() {
    const auto head = host::readHead(path_, maximumSize);
    if (!head || !head->whole) return false;
    if (head->state == lookedAt_) return hadOne_;
    const auto list = platform::PropertyListSerialization::propertyListWithData(
        platform::Data(head->bytes.begin(), head->bytes.end()));
    const platform::Array* networks = list ? list->array() : nullptr;
    hadOne_ = networks && std::ranges::any_of(*networks, [](const platform::Value& network) {
                  return !nameOf(network["SSID"]).empty();
              });
    lookedAt_ = head->state;
    return hadOne_;
}

std::vector<std::string> NetworkListFile::knownSSIDs() {
    const auto head = host::readHead(path_, maximumSize);
    if (!head && head.error() == ENOENT && missing_ == Missing::IsEmpty) return {};
    if (!head) return cannotBeUsed(path_, host::message(head.error()) + ".");
    if (!head->whole) return cannotBeUsed(path_, "it is too large.");
    const auto list = platform::PropertyListSerialization::propertyListWithData(
        platform::Data(head->bytes.begin(), head->bytes.end()));
    if (!list) return cannotBeUsed(path_, list.error().localizedDescription);
    const platform::Array* networks = list->array();
    if (!networks) return cannotBeUsed(path_, "it is no array.");

    std::vector<std::string> names;
    for (const platform::Value& network : *networks) {
        if (std::string name = nameOf(network["SSID"]); !name.empty()) names.push_back(std::move(name));
    }
    if (const std::size_t nameless = networks->size() - names.size(); nameless > 0) {
        platform::log("In the networks file " + quotedText(path_) + ", " + std::to_string(nameless) + " of " +
                      std::to_string(networks->size()) + " entries have no \"SSID\".");
    }
    return names;
}

}  // namespace device
