// SPDX-License-Identifier: MIT
#include "RingerCalendarsController.h"

#include <algorithm>

#include "RingerRows.h"
#include "RingerSettings.h"
#include "platform/eventkit/EKEventStore.h"

namespace ringer {

using platform::Array;
using platform::method;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::Value;

PLATFORM_REGISTER_CLASS(RingerCalendarsController)

namespace {

constexpr const char* storedKey = "silentCalendars";

}  // namespace

platform::SpecifierArray RingerCalendarsController::specifiers() {
    if (specifiers_) return specifiers_;
    specifiers_ = std::make_shared<platform::SpecifierList>();
    specifiers_->push_back(makeGroup(text("Calendars"), text("No bell rings during their events.")));
    for (const auto& calendar : platform::EKEventStore().calendars()) {
        specifiers_->push_back(
            makeRow({.name = calendar->title(),
                     .identifier = calendar->calendarIdentifier(),
                     .cell = PSCellType::Switch,
                     .target = shared(this),
                     .set = method("setSilent:specifier:", &RingerCalendarsController::setSilent_specifier),
                     .get = method("isSilent:", &RingerCalendarsController::isSilent),
                     .userInfo = calendar}));
    }
    return specifiers_;
}

void RingerCalendarsController::setSilent_specifier(const Value& value,
                                                    const std::shared_ptr<PSSpecifier>& specifier) {
    const Value identifier = specifier->identifier().value_or("");
    showError(*this, settings::change([&](platform::Dictionary& values) {
        const auto stored = values.find(storedKey);
        Array silent = stored != values.end() && stored->second.array() ? *stored->second.array() : Array();
        std::erase(silent, identifier);
        if (value.isTrue()) silent.push_back(identifier);
        values.insert_or_assign(storedKey, std::move(silent));
    }));
}

Value RingerCalendarsController::isSilent(const std::shared_ptr<PSSpecifier>& specifier) {
    const Value silent = settings::valueForKey(storedKey);
    return silent.array() &&
           std::ranges::count(*silent.array(), Value(specifier->identifier().value_or(""))) > 0;
}

}  // namespace ringer
