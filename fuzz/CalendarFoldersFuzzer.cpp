// SPDX-License-Identifier: MIT
// An account with a calendar of each kind: up to the first null character the input is the folder's display
// name, up to the second its colour, the rest is a calendar file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "device/calendars/CalendarFolders.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/Unicode.h"

namespace {

namespace fs = std::filesystem;

void require(bool holds) {
    if (!holds) std::abort();
}

class Silence : public platform::LogSink {
  public:
    void write(const std::string& line) override {
        require(!line.empty() && !platform::firstInvalidUTF8(line));
    }
};

/// Removed when the fuzzer ends.
class Directory {
  public:
    Directory() {
        std::string pattern = (fs::temp_directory_path() / "calendars-fuzzer-XXXXXX").string();
        require(mkdtemp(pattern.data()) != nullptr);
        path_ = pattern;
        fs::create_directories(path_ / "Account/folder");
        platform::Device device;
        device.log = std::make_shared<Silence>();
        platform::Device::install(device);
    }
    ~Directory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    const fs::path& path() const { return path_; }
    void put(const char* name, std::string_view text) const {
        std::ofstream(path_ / "Account" / name, std::ios::binary) << text;
    }

  private:
    fs::path path_;
};

std::string_view take(std::string_view& text) {
    const std::string_view piece = text.substr(0, text.find('\0'));
    text.remove_prefix(std::min(text.size(), piece.size() + 1));
    return piece;
}

void check(const platform::CalendarEntry& calendar) {
    require(!calendar.title.empty() && !platform::firstInvalidUTF8(calendar.title));
    bool shows = false;
    for (std::size_t at = 0; at < calendar.title.size();) {
        const auto character = platform::decodeUTF8(calendar.title, at);
        require(character && !platform::isControlOrLineBreak(character->codePoint));
        shows = shows || !platform::isInvisible(character->codePoint);
        at += character->length;
    }
    require(shows);
    require(calendar.account == "Account" && calendar.colour <= 0xFFFFFF);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Directory directory;
    std::string_view text(reinterpret_cast<const char*>(data), size);
    directory.put("folder/displayname", take(text));
    directory.put("folder/color", take(text));
    directory.put("file.ics", text);

    device::CalendarFolders source(directory.path(), device::CalendarFolders::Missing::IsAFault);
    const auto calendars = source.calendars();
    require(calendars.size() == 1 || calendars.size() == 2);
    require(calendars.back().identifier == "Account/folder");
    require(calendars.size() == 1 || calendars.front().identifier == "Account/file.ics");
    for (const auto& calendar : calendars) check(calendar);
    require(source.calendars() == calendars);
    return 0;
}
