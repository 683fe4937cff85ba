// SPDX-License-Identifier: MIT
#include "settings/application/StoredFiles.h"

#include <algorithm>
#include <cstdint>

#include "device/PhonePaths.h"
#include "platform/foundation/PropertyList.h"

namespace settings {

using platform::Data;
using platform::Dictionary;
using platform::Result;
using platform::Value;

namespace {

/// A tree of more bytes than this is nothing to look at.
constexpr std::int64_t longestFile = std::int64_t{4} << 20;
constexpr std::int64_t longestLog = std::int64_t{64} << 20;
constexpr std::size_t logEnd = std::size_t{64} << 10;

/// Empty when nothing is there.
Result<std::optional<Data>> contents(const platform::FileSystem& files, const std::string& path,
                                     std::int64_t longest) {
    const auto stamp = files.stamp(path);
    if (!stamp) return std::unexpected(stamp.error());
    if (!*stamp) return std::nullopt;
    if ((*stamp)->size > longest) {
        return platform::failure("The file \"" + path + "\" has " + std::to_string((*stamp)->size) +
                                 " bytes, which is more than is shown.");
    }
    Result<Data> data = files.read(path);
    if (!data) return std::unexpected(data.error());
    return *std::move(data);
}

Result<Value> tree(const platform::FileSystem& files, const std::string& path) {
    const auto data = contents(files, path, longestFile);
    if (!data) return std::unexpected(data.error());
    if (!*data) return Value();
    return platform::PropertyListSerialization::propertyListWithData(**data);
}

Result<Value> endOfLog(const platform::FileSystem& files) {
    const auto data = contents(files, std::string(device::phonePaths::shellLog), longestLog);
    if (!data) return std::unexpected(data.error());
    if (!*data) return Value("");
    const std::size_t length = std::min((*data)->size(), logEnd);
    auto start = (*data)->end() - static_cast<std::ptrdiff_t>(length);
    // From the first whole line on.
    if (length < (*data)->size()) start = std::find(start, (*data)->end(), '\n') + 1;
    return Value(std::string(start, (*data)->end()));
}

}  // namespace

std::map<std::string, std::string> storedFilePaths(const platform::Bundle& bundle) {
    std::map<std::string, std::string> paths;
    const auto entry = bundle.infoDictionary().find("StoredFiles");
    if (entry == bundle.infoDictionary().end() || entry->second.dictionary() == nullptr) return paths;
    for (const auto& [name, path] : *entry->second.dictionary()) {
        if (path.string()) paths.emplace(name, *path.string());
    }
    return paths;
}

Dictionary storedFiles(const std::shared_ptr<platform::Bundle>& bundle, const platform::FileSystem& files) {
    Dictionary told{{"settings", nullptr}, {"profiles", nullptr}};
    Dictionary problems;
    const auto put = [&](const std::string& name, const Result<Value>& value) {
        told[name] = value.value_or(Value());
        if (!value) problems[name] = value.error().localizedDescription;
    };
    if (bundle) {
        for (const auto& [name, path] : storedFilePaths(*bundle)) put(name, tree(files, path));
    }
    put("log", endOfLog(files));
    told["problems"] = std::move(problems);
    return told;
}

}  // namespace settings
