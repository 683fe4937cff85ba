// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/CalendarSource.h"
#include "platform/foundation/DeviceFacts.h"
#include "platform/foundation/DynamicLibraries.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/MailService.h"
#include "platform/foundation/NetworkSource.h"
#include "platform/foundation/Processes.h"
#include "platform/foundation/ToneSource.h"
#include "platform/foundation/URLOpener.h"

namespace doubles {

/// Says of the device what the test says.
class FakeDeviceFacts : public platform::DeviceFacts {
  public:
    std::string version = "11.4";
    /// Empty: a device that does not answer the question.
    std::optional<int> idiom = 0;
    double scale = 2.0;
    std::vector<std::string> languages{"en"};
    bool dark = false;
    std::string serial = "F4KESERIAL01";
    std::string udid = "0123456789abcdef0123456789abcdef01234567";
    std::string modelName = "Phone7,2";

    std::string systemVersion() const override { return version; }
    std::optional<int> userInterfaceIdiom() const override { return idiom; }
    double screenScale() const override { return scale; }
    std::vector<std::string> preferredLanguages() const override { return languages; }
    bool isDarkMode() const override { return dark; }
    void setDarkMode(bool on) override { dark = on; }
    std::string serialNumber() const override { return serial; }
    std::string UDID() const override { return udid; }
    std::string model() const override { return modelName; }
};

/// Opens the schemes it is told, and remembers what was opened.
class FakeURLOpener : public platform::URLOpener {
  public:
    /// Beginnings of the addresses that something is installed for.
    std::vector<std::string> openable{"http://", "https://"};
    std::vector<std::string> opened;

    bool canOpenURL(const std::string& url) const override {
        return std::ranges::any_of(openable,
                                   [&](const std::string& start) { return url.starts_with(start); });
    }
    bool openURL(const std::string& url) override {
        if (!canOpenURL(url)) return false;
        opened.push_back(url);
        return true;
    }
};

/// Has the libraries that it is given.
class FakeLibraries : public platform::DynamicLibraries {
  public:
    std::set<std::string, std::less<>> present;

    bool canOpen(std::string_view path) const override { return present.contains(path); }
};

/// Knows the calendars that it is given.
class FakeCalendarSource : public platform::CalendarSource {
  public:
    std::vector<platform::CalendarEntry> entries;

    std::vector<platform::CalendarEntry> calendars() override { return entries; }
};

/// Remembers the networks that it is given.
class FakeNetworkSource : public platform::NetworkSource {
  public:
    std::vector<std::string> ssids;

    std::vector<std::string> knownSSIDs() override { return ssids; }
    bool isConnected() override { return !ssids.empty(); }
};

/// Has the tones that it is given; each sounds like its identifier's bytes.
class FakeToneSource : public platform::ToneSource {
  public:
    std::vector<platform::ToneEntry> entries{{"texttone:Calendar Alert", "Calendar Alert"},
                                             {"texttone:Chord", "Chord"}};

    std::vector<platform::ToneEntry> tones() override { return entries; }
    platform::Result<platform::ToneSound> sound(std::string_view identifier) override {
        if (std::ranges::find(entries, identifier, &platform::ToneEntry::identifier) == entries.end())
            return platform::failure("There is no tone \"" + std::string(identifier) + "\".");
        return platform::ToneSound{"audio/wav", platform::Data(identifier.begin(), identifier.end())};
    }
};

/// Takes mails, unless it is told a reason not to, and keeps them.
class FakeMailService : public platform::MailService {
  public:
    /// "" for no account.
    std::string account;
    std::optional<platform::Error> refusal;
    std::vector<platform::MailDraft> sent;
    std::vector<platform::MailDraft> saved;

    bool canSend() const override { return !account.empty(); }
    std::string senderAddress() const override { return account; }
    platform::Result<void> send(const platform::MailDraft& draft) override { return take(draft, sent); }
    platform::Result<void> save(const platform::MailDraft& draft) override { return take(draft, saved); }

  private:
    platform::Result<void> take(const platform::MailDraft& draft, std::vector<platform::MailDraft>& mails) {
        if (refusal) return std::unexpected(*refusal);
        mails.push_back(draft);
        return {};
    }
};

/// Has the processes that it is given, and remembers which were ended. They are there again at once.
class FakeProcesses : public platform::Processes {
  public:
    std::set<std::string, std::less<>> running{"SpringBoard"};
    std::vector<std::string> killed;

    bool killProcessByName(std::string_view name) override {
        if (!running.contains(name)) return false;
        killed.emplace_back(name);
        return true;
    }
};

/// Keeps the log's lines. Usable from any thread.
class MemoryLog : public platform::LogSink {
  public:
    void write(const std::string& line) override {
        const std::lock_guard lock(mutex_);
        lines_.push_back(line);
    }
    std::vector<std::string> lines() const {
        const std::lock_guard lock(mutex_);
        return lines_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};

}  // namespace doubles
