// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quietrix/ProfileReference.h"

namespace console {

/// The profile as an object of the keys that are stored, in their order; a nil value is null.
boost::json::object jsonOfProfile(const quietrix::QXProfile& profile);
boost::json::array jsonOfProfiles(const std::vector<Record>& profiles);

/// "All Day" or "9:00 AM - 5:00 PM", as the phone's list has it.
std::string hoursText(const quietrix::QXProfile& profile);
/// When the profile applies, but for its hours: networks, calendars, the status of events.
std::string conditionsText(const quietrix::QXProfile& profile);
/// Each key that is stored with its value in words.
std::vector<std::pair<std::string, std::string>> valuesInWords(const quietrix::QXProfile& profile);
/// A value of such a key in words; it need not be one that the key takes.
std::string valueInWords(std::string_view key, const platform::Value& value);

}  // namespace console
