// SPDX-License-Identifier: MIT
#include "platform/eventkit/EKCalendar.h"

#include <utility>

namespace platform {

PLATFORM_REGISTER_ABSTRACT_CLASS(EKCalendar)

EKCalendar::EKCalendar(std::string title, std::string identifier, std::string sourceTitle,
                       std::shared_ptr<UIColor> colour)
    : title_(std::move(title)),
      identifier_(std::move(identifier)),
      sourceTitle_(std::move(sourceTitle)),
      colour_(colour ? std::move(colour) : UIColor::blackColor()) {}

}  // namespace platform
