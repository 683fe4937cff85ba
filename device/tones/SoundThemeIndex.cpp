// SPDX-License-Identifier: MIT
#include "device/tones/SoundThemeIndex.h"

#include <glib.h>

#include <memory>

#include "device/EscapedText.h"

namespace device {

namespace {

constexpr const char* themeGroup = "Sound Theme";

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_free)>;
using Strings = std::unique_ptr<char*, decltype(&g_strfreev)>;

/// The names of a list that stay below the folder they are looked up in.
template <class IsSafe>
std::vector<std::string> names(const KeyFile& file, const char* key, const IsSafe& isSafe) {
    std::vector<std::string> result;
    gsize count = 0;
    const Strings list(g_key_file_get_string_list(file.get(), themeGroup, key, &count, nullptr), g_strfreev);
    for (gsize i = 0; list && i < count && result.size() < SoundThemeIndex::maximumNames; ++i) {
        const std::string_view name = g_strstrip(list.get()[i]);
        if (isSafe(name)) result.emplace_back(name);
    }
    return result;
}

bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && !name.contains('/');
}

bool isPathBelow(std::string_view path) {
    while (path.contains('/')) {
        if (!isPlainName(path.substr(0, path.find('/')))) return false;
        path.remove_prefix(path.find('/') + 1);
    }
    return isPlainName(path);
}

}  // namespace

platform::Result<SoundThemeIndex> SoundThemeIndex::parse(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    const KeyFile file(g_key_file_new(), g_key_file_free);
    g_key_file_set_list_separator(file.get(), ',');
    GError* failure = nullptr;
    if (!g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE, &failure)) {
        const std::unique_ptr<GError, decltype(&g_error_free)> error(failure, g_error_free);
        return platform::failure("is no sound theme: " + escapedText(error->message));
    }
    if (!g_key_file_has_group(file.get(), themeGroup))
        return platform::failure("is no sound theme: it has no group \"Sound Theme\"");
    SoundThemeIndex index;
    index.directories = names(file, "Directories", isPathBelow);
    index.inherits = names(file, "Inherits", isPlainName);
    index.hidden = g_key_file_get_boolean(file.get(), themeGroup, "Hidden", nullptr) != FALSE;
    return index;
}

}  // namespace device
