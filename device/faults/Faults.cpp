// SPDX-License-Identifier: MIT
#include "device/faults/Faults.h"

#include <algorithm>
#include <array>
#include <utility>

namespace device {

namespace {

struct Name {
    Fault fault;
    std::string_view name;
};

constexpr std::array<Name, 10> allNames{{{Fault::ProfilesUnreadable, "profilesUnreadable"},
                                         {Fault::ProfilesCutShort, "profilesCutShort"},
                                         {Fault::ProfilesLocked, "profilesLocked"},
                                         {Fault::DiskFull, "diskFull"},
                                         {Fault::ReadOnly, "readOnly"},
                                         {Fault::Slow, "slow"},
                                         {Fault::CalendarsSilent, "calendarsSilent"},
                                         {Fault::NetworksSilent, "networksSilent"},
                                         {Fault::TonesSilent, "tonesSilent"},
                                         {Fault::MailFails, "mailFails"}}};

}  // namespace

std::optional<Fault> Faults::named(std::string_view name) {
    const auto* found = std::ranges::find(allNames, name, &Name::name);
    if (found == allNames.end()) return std::nullopt;
    return found->fault;
}

std::string_view Faults::nameOf(Fault fault) {
    return std::ranges::find(allNames, fault, &Name::fault)->name;
}

std::vector<std::string_view> Faults::names() {
    std::vector<std::string_view> names;
    names.reserve(allNames.size());
    for (const Name& each : allNames) names.push_back(each.name);
    return names;
}

void Faults::setProfilesPath(std::string path) {
    const std::lock_guard lock(mutex_);
    profilesPath_ = std::move(path);
}

void Faults::begin(Fault fault) {
    const std::lock_guard lock(mutex_);
    active_.insert(fault);
}

void Faults::end(Fault fault) {
    const std::lock_guard lock(mutex_);
    active_.erase(fault);
}

void Faults::clear() {
    const std::lock_guard lock(mutex_);
    active_.clear();
}

bool Faults::has(Fault fault) const {
    const std::lock_guard lock(mutex_);
    return active_.contains(fault);
}

std::vector<Fault> Faults::active() const {
    const std::lock_guard lock(mutex_);
    return {active_.begin(), active_.end()};
}

void Faults::setDelay(std::chrono::milliseconds delay) {
    const std::lock_guard lock(mutex_);
    delay_ = delay;
}

std::chrono::milliseconds Faults::delay() const {
    const std::lock_guard lock(mutex_);
    return delay_;
}

std::string Faults::profilesPath() const {
    const std::lock_guard lock(mutex_);
    return profilesPath_;
}

}  // namespace device
