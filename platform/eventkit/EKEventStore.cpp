// SPDX-License-Identifier: MIT
#include "platform/eventkit/EKEventStore.h"

#include "platform/foundation/Device.h"

namespace platform {

PLATFORM_REGISTER_CLASS(EKEventStore)

namespace {

double channel(std::uint32_t colour, unsigned shift) {
    return static_cast<double>((colour >> shift) & 0xffU) / 255.0;
}

}  // namespace

std::vector<std::shared_ptr<EKCalendar>> EKEventStore::calendars() const {
    std::vector<std::shared_ptr<EKCalendar>> calendars;
    const auto& source = Device::current().calendars;
    if (!source) return calendars;
    for (const auto& entry : source->calendars()) {
        calendars.push_back(std::make_shared<EKCalendar>(
            entry.title, entry.identifier, entry.account,
            UIColor::colorWithRed_green_blue_alpha(channel(entry.colour, 16), channel(entry.colour, 8),
                                                   channel(entry.colour, 0), 1.0)));
    }
    return calendars;
}

}  // namespace platform
