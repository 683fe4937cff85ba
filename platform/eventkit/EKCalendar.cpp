// SPDX-License-Identifier: MIT
#include "platform/eventkit/EKCalendar.h"

#include <utility>

#include "platform/foundation/LogSink.h"

namespace platform {

PLATFORM_REGISTER_ABSTRACT_CLASS(EKCalendar)

EKCalendar::EKCalendar(std::string title, std::string identifier, std::string sourceTitle,
                       std::shared_ptr<UIColor> colour)
    : title_(std::move(title)),
      identifier_(std::move(identifier)),
      sourceTitle_(std::move(sourceTitle)),
      colour_(colour ? std::move(colour) : UIColor::blackColor()) {}

Value EKCalendar::valueForKey(std::string_view key) const {
    if (key == "title") return title_;
    if (key == "identifier" || key == "calendarIdentifier") return identifier_;
    if (key == "sourceTitle") return sourceTitle_;
    if (key == "CGColor") return colour_;
    log("A calendar has no key \"" + std::string(key) + "\".");
    return {};
}

void EKCalendar::setValue_forKey(const Value& /*value*/, std::string_view key) {
    log("A calendar is read-only; its key \"" + std::string(key) + "\" was not changed.");
}

}  // namespace platform
