// SPDX-License-Identifier: MIT
#include "settings/recording/RecordedMachine.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace settings {

using platform::Result;

namespace {

class RecordedCalendars : public platform::CalendarSource {
  public:
    explicit RecordedCalendars(RecordedMachine& machine) : machine_(machine) {}
    Calendars calendars() override { return machine_.calendars(); }

  private:
    RecordedMachine& machine_;
};

class RecordedNetworks : public platform::NetworkSource {
  public:
    explicit RecordedNetworks(RecordedMachine& machine) : machine_(machine) {}
    Networks knownSSIDs() override { return machine_.networks(); }
    bool isConnected() override { return machine_.connected(); }

  private:
    RecordedMachine& machine_;
};

class RecordedTones : public platform::ToneSource {
  public:
    explicit RecordedTones(RecordedMachine& machine) : machine_(machine) {}
    Tones tones() override { return machine_.tones(); }
    /// No answer tells what a tone sounds like.
    Result<platform::ToneSound> sound(std::string_view identifier) override {
        if (platform::ToneSource* source = machine_.toneSource()) return source->sound(identifier);
        return platform::failure("The tone \"" + std::string(identifier) + "\" was not recorded.");
    }

  private:
    RecordedMachine& machine_;
};

class HearingLog : public platform::LogSink {
  public:
    HearingLog(std::shared_ptr<platform::LogSink> log, std::vector<std::string>& heard)
        : log_(std::move(log)), heard_(heard) {}
    void write(const std::string& line) override {
        // What threads say is of no service that was asked.
        if (std::this_thread::get_id() == mainThread_) heard_.push_back(line);
        log_->write(line);
    }

  private:
    std::thread::id mainThread_ = std::this_thread::get_id();
    std::shared_ptr<platform::LogSink> log_;
    std::vector<std::string>& heard_;
};

}  // namespace

void RecordedMachine::setServices(Services services) {
    services_ = std::move(services);
    forget();
}

void RecordedMachine::beginStep(MachineAnswers recorded) {
    recorded_ = std::move(recorded);
    forget();
}

void RecordedMachine::forget() {
    calendars_.present.reset();
    networks_.present.reset();
    connected_.present.reset();
    tones_.present.reset();
}

Calendars RecordedMachine::calendars() {
    return answer(calendars_, [this] { return services_.calendars->calendars(); });
}

Networks RecordedMachine::networks() {
    return answer(networks_, [this] { return services_.networks->knownSSIDs(); });
}

Connected RecordedMachine::connected() {
    return answer(connected_, [this] { return services_.networks->isConnected(); });
}

Tones RecordedMachine::tones() {
    return answer(tones_, [this] { return services_.tones->tones(); });
}

DeviceRefusal RecordedMachine::recordedRefusal() {
    const auto recorded = takeRecorded<DeviceRefusal>();
    return recorded ? std::get<DeviceRefusal>(recorded->what) : DeviceRefusal();
}

std::shared_ptr<platform::LogSink> RecordedMachine::hearingLog(std::shared_ptr<platform::LogSink> log) {
    return std::make_shared<HearingLog>(std::move(log), heard_);
}

template <class What, class Ask>
What RecordedMachine::answer(Look<What>& look, const Ask& ask) {
    if (look.present) return *look.present;
    if (isThere()) {
        heard_.clear();
        look.last = ask();
        found_.push_back({look.last, std::exchange(heard_, {})});
    } else if (const auto recorded = takeRecorded<What>()) {
        look.last = std::get<What>(recorded->what);
        for (const std::string& line : recorded->log) platform::log(line);
    }
    look.present = look.last;
    return look.last;
}

/// The next one of its kind.
template <class What>
std::optional<MachineAnswer> RecordedMachine::takeRecorded() {
    const auto next = std::ranges::find_if(
        recorded_, [](const MachineAnswer& finding) { return std::holds_alternative<What>(finding.what); });
    if (next == recorded_.end()) return std::nullopt;
    MachineAnswer taken = std::move(*next);
    recorded_.erase(next);
    return taken;
}

std::shared_ptr<platform::CalendarSource> recordedCalendars(RecordedMachine& machine) {
    return std::make_shared<RecordedCalendars>(machine);
}

std::shared_ptr<platform::NetworkSource> recordedNetworks(RecordedMachine& machine) {
    return std::make_shared<RecordedNetworks>(machine);
}

std::shared_ptr<platform::ToneSource> recordedTones(RecordedMachine& machine) {
    return std::make_shared<RecordedTones>(machine);
}

}  // namespace settings
