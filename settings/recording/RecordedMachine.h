// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/CalendarSource.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/NetworkSource.h"
#include "platform/foundation/ToneSource.h"
#include "settings/recording/MachineAnswers.h"

namespace settings {

/// What the phone finds on its machine, whenever it looks: each thing once a step, and the same for the rest
/// of the step. Where there is a machine, it is asked and what it answers is kept for the recording; else
/// what was recorded is the answer, and where nothing was, what was found last. Main thread.
class RecordedMachine {
  public:
    /// Calendars, networks and tones of a machine; all empty where there is none.
    struct Services {
        std::shared_ptr<platform::CalendarSource> calendars;
        std::shared_ptr<platform::NetworkSource> networks;
        std::shared_ptr<platform::ToneSource> tones;
    };

    /// Exchanges the services, and has everything looked at anew.
    void setServices(Services services);
    bool isThere() const { return services_.calendars != nullptr; }
    /// A new step begins; `recorded` is what was found in it.
    void beginStep(MachineAnswers recorded);
    /// What was found since the last call.
    MachineAnswers takeFound() { return std::exchange(found_, {}); }

    Calendars calendars();
    Networks networks();
    Connected connected();
    Tones tones();
    platform::ToneSource* toneSource() const { return services_.tones.get(); }
    /// Notes why the machine refused a change of the device, if it did.
    void noteRefusal(DeviceRefusal refusal) { found_.push_back({std::move(refusal), {}}); }
    DeviceRefusal recordedRefusal();

    /// The log of a machine, which hears what its services say.
    std::shared_ptr<platform::LogSink> hearingLog(std::shared_ptr<platform::LogSink> log);

  private:
    template <class What>
    struct Look {
        /// In this step.
        std::optional<What> present;
        What last{};
    };
    template <class What, class Ask>
    What answer(Look<What>& look, const Ask& ask);
    template <class What>
    std::optional<MachineAnswer> takeRecorded();
    void forget();

    Services services_;
    MachineAnswers recorded_;
    MachineAnswers found_;
    std::vector<std::string> heard_;
    Look<Calendars> calendars_;
    Look<Networks> networks_;
    Look<Connected> connected_;
    Look<Tones> tones_;
};

/// The services of a phone whose machine this is, which outlives them.
std::shared_ptr<platform::CalendarSource> recordedCalendars(RecordedMachine& machine);
std::shared_ptr<platform::NetworkSource> recordedNetworks(RecordedMachine& machine);
std::shared_ptr<platform::ToneSource> recordedTones(RecordedMachine& machine);

}  // namespace settings
