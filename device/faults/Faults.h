// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace device {

/// What can be wrong with a phone, to see what its user sees then.
enum class Fault {
    /// The profiles file cannot be read.
    ProfilesUnreadable,
    /// Half of it is missing.
    ProfilesCutShort,
    /// Another process has it locked.
    ProfilesLocked,
    /// Nothing more can be written.
    DiskFull,
    /// Nothing can be written, removed or locked.
    ReadOnly,
    /// Each operation on a file takes longer.
    Slow,
    /// The source gives nothing.
    CalendarsSilent,
    NetworksSilent,
    TonesSilent,
    /// No mail can be sent or kept.
    MailFails,
};

/// Which faults a phone has just now. Usable from any thread.
class Faults {
  public:
    /// The fault of a name such as "diskFull"; empty when there is none.
    static std::optional<Fault> named(std::string_view name);
    static std::string_view nameOf(Fault fault);
    /// Every name, in the order of Fault.
    static std::vector<std::string_view> names();

    /// `profiles` is the phone's path of the file that the first three are about; without one these do
    /// nothing.
    void setProfilesPath(std::string path);
    void begin(Fault fault);
    void end(Fault fault);
    /// Ends all.
    void clear();
    bool has(Fault fault) const;
    /// In the order of Fault.
    std::vector<Fault> active() const;
    /// For Fault::Slow.
    void setDelay(std::chrono::milliseconds delay);
    std::chrono::milliseconds delay() const;
    std::string profilesPath() const;

  private:
    mutable std::mutex mutex_;
    std::set<Fault> active_;
    std::chrono::milliseconds delay_{0};
    std::string profilesPath_;
};

}  // namespace device
