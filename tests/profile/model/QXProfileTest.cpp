// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <regex>
#include <set>

#include "device/SeededRandom.h"
#include "platform/foundation/Calendar.h"
#include "platform/foundation/Device.h"
#include "profile/model/ChangedProfiles.h"
#include "profile/model/QXProfile.h"
#include "profile/model/QXProfileKeys.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::required;
using platform::Array;
using platform::Dictionary;
using platform::Value;
using quietrix::KeyStorage;
using quietrix::QXProfile;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Profile : public testing::Test {
  protected:
    doubles::Phone phone_;
    std::shared_ptr<QXProfile> profile_ = std::make_shared<QXProfile>();
};

std::string timeOfDay(std::optional<platform::Date> date) {
    if (!date) return "none";
    const auto parts = platform::Calendar::currentCalendar().components_fromDate(
        platform::CalendarUnitHour | platform::CalendarUnitMinute | platform::CalendarUnitSecond, *date);
    return std::to_string(parts.hour) + ":" + std::to_string(parts.minute) + ":" +
           std::to_string(parts.second);
}

TEST_F(Profile, defaultProfile_isComplete) {
    const auto profile = QXProfile::defaultProfile();
    EXPECT_EQ("New Profile", profile->title());
    EXPECT_TRUE(profile->isEnabled());
    EXPECT_TRUE(profile->isAllDay());
    EXPECT_EQ("9:00 AM", profile->startTime());
    EXPECT_EQ("5:00 PM", profile->endTime());
    EXPECT_EQ(0.0, profile->playBackVolume());
    EXPECT_EQ(0.0, profile->ringerVolume());
    EXPECT_TRUE(profile->vibrate());
    EXPECT_TRUE(profile->isPlayAlert());
    EXPECT_EQ(std::nullopt, profile->alertToneIdentifier());
    EXPECT_TRUE(profile->vibrateAlert());
    EXPECT_TRUE(profile->wakeUpScreen());
    EXPECT_FALSE(profile->dnDEnabled());
    EXPECT_FALSE(profile->showOnStatusBar());
    EXPECT_THAT(profile->wifiNetworks(), IsEmpty());
    EXPECT_THAT(profile->calendarIdentifiers(), IsEmpty());
    EXPECT_TRUE(profile->allDayEventsIgnored());
    EXPECT_EQ(0, profile->applyProfileEventStatus());
    EXPECT_FALSE(profile->isNewProfile());
    EXPECT_THAT(profile->edit().set, IsEmpty());
}

TEST_F(Profile, defaultProfile_hasAFreshRandomUuidInCapitals) {
    const std::regex uuid("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const std::string identifier = QXProfile::defaultProfile()->identifier();
        EXPECT_TRUE(std::regex_match(identifier, uuid)) << identifier;
        seen.insert(identifier);
    }
    EXPECT_EQ(100U, seen.size());
}

TEST_F(Profile, defaultProfile_takesItsIdentifierFromTheDevicesChance) {
    platform::Device device = platform::Device::current();
    std::vector<std::string> seen;
    for (const std::uint32_t seed : {1U, 1U, 2U}) {
        device.random = std::make_shared<device::SeededRandom>(seed);
        platform::Device::install(device);
        seen.push_back(QXProfile::defaultProfile()->identifier());
    }
    EXPECT_EQ(seen[0], seen[1]);
    EXPECT_NE(seen[0], seen[2]);
}

TEST_F(Profile, everyKey_readsWhatWasWrittenUnderIt) {
    const Dictionary written{{"identifier", "ID"},
                             {"title", "Büro 🔕"},
                             {"enabled", false},
                             {"allDay", false},
                             {"startTime", "10:05 PM"},
                             {"endTime", "11:30 PM"},
                             {"playBackVolume", 0.25},
                             {"ringerVolume", 0.75},
                             {"vibrate", false},
                             {"playAlert", false},
                             {"alertToneIdentifier", "texttone:Chord"},
                             {"vibrateAlert", false},
                             {"wakeUpScreen", false},
                             {"dnDEnabled", true},
                             {"showOnStatusBar", true},
                             {"wifiNetworks", Array{"Home", "Office"}},
                             {"calendarIdentifiers", Array{"c1"}},
                             {"allDayEventsIgnored", false},
                             {"applyProfileEventStatus", 3},
                             {"newProfile", true}};
    for (const auto& [key, value] : written) profile_->setValue_forKey(value, key);
    for (const auto& [key, value] : written) EXPECT_EQ(value, profile_->valueForKey(key)) << key;
    EXPECT_THAT(phone_.log->lines(), IsEmpty());
    EXPECT_EQ("Büro 🔕", profile_->title());
    EXPECT_FALSE(profile_->isEnabled());
    EXPECT_EQ(0.75, profile_->ringerVolume());
    EXPECT_EQ("texttone:Chord", profile_->alertToneIdentifier());
    EXPECT_THAT(profile_->wifiNetworks(), ElementsAre("Home", "Office"));
    EXPECT_EQ(3, profile_->applyProfileEventStatus());
    EXPECT_TRUE(profile_->isNewProfile());

    std::size_t writable = 0;
    for (const auto& key : quietrix::profileKeys()) writable += key.set ? 1 : 0;
    EXPECT_EQ(written.size(), writable);
}

TEST_F(Profile, valuesOfARecord_makeAnEqualOne) {
    for (const auto& key : quietrix::profileKeys()) {
        if (key.type == quietrix::KeyType::Boolean)
            profile_->setValue_forKey(!profile_->valueForKey(key.name).isTrue(), key.name);
    }
    profile_->setIdentifier("ID");
    profile_->setRingerVolume(0.1);
    profile_->setAlertToneIdentifier("texttone:Bell");
    profile_->setWifiNetworks({"a", "b"});
    profile_->setNewProfile(true);
    const auto copy = QXProfile::profileWithValues(profile_->storedValues());
    EXPECT_EQ(profile_->storedValues(), copy->storedValues());
    EXPECT_FALSE(copy->isNewProfile());
    EXPECT_THAT(copy->edit().set, IsEmpty());
}

TEST_F(Profile, storedValues_holdNothingDerivedAndNoNil) {
    profile_->setNewProfile(true);
    const Dictionary values = profile_->storedValues();
    for (const char* key :
         {"newProfile", "startDate", "endDate", "applyProfileEventStatusString", "alertToneIdentifier"}) {
        EXPECT_FALSE(values.contains(key)) << key;
    }
    EXPECT_EQ(Value(true), values.at("enabled"));
    EXPECT_EQ(Value(0.0), values.at("ringerVolume"));
    EXPECT_EQ(Value(Array()), values.at("wifiNetworks"));
}

TEST_F(Profile, missingKeys_takeTheirDefaults) {
    const auto profile = QXProfile::profileWithValues({{"identifier", "ID"}, {"enabled", false}});
    EXPECT_EQ("ID", profile->identifier());
    EXPECT_FALSE(profile->isEnabled());
    Dictionary expected = QXProfile().storedValues();
    expected.insert_or_assign("identifier", "ID");
    expected.insert_or_assign("enabled", false);
    EXPECT_EQ(expected, profile->storedValues());
    EXPECT_EQ(std::nullopt, profile->alertToneIdentifier());
    EXPECT_THAT(phone_.log->lines(), IsEmpty());
}

TEST_F(Profile, storedValueOfTheWrongType_takesItsDefaultAndIsLogged) {
    const auto profile =
        QXProfile::profileWithValues({{"identifier", "ID"}, {"startTime", 9}, {"title", "Work"}});
    EXPECT_EQ("9:00 AM", profile->startTime());
    EXPECT_EQ("Work", profile->title());
    EXPECT_THAT(phone_.log->lines(),
                ElementsAre(AllOf(HasSubstr("\"ID\""), HasSubstr("\"startTime\""), HasSubstr("an integer"))));
}

TEST_F(Profile, booleanKey_takesBooleansAndZeroAndOne) {
    profile_->setValue_forKey(0, "vibrate");
    EXPECT_EQ(Value(false), profile_->valueForKey("vibrate"));
    profile_->setValue_forKey(1, "vibrate");
    EXPECT_EQ(Value(true), profile_->valueForKey("vibrate"));
    for (const Value& refused : {Value(2), Value(-1), Value(0.0), Value("NO"), Value()}) {
        profile_->setValue_forKey(refused, "vibrate");
        EXPECT_EQ(Value(true), profile_->valueForKey("vibrate"));
    }
    EXPECT_EQ(5U, phone_.log->lines().size());
}

TEST_F(Profile, volume_takesEveryNumberAsItIs) {
    for (const Value& number : {Value(1), Value(0.5), Value(-3.5), Value(7)}) {
        profile_->setValue_forKey(number, "ringerVolume");
        EXPECT_EQ(Value(*required(number.number())), profile_->valueForKey("ringerVolume"));
    }
    EXPECT_THAT(phone_.log->lines(), IsEmpty());
}

TEST_F(Profile, volume_refusesNaNAndWhatIsNoNumber) {
    profile_->setRingerVolume(0.5);
    for (const Value& refused : {Value(std::nan("")), Value(true), Value("0.1"), Value()}) {
        profile_->setValue_forKey(refused, "ringerVolume");
    }
    profile_->setRingerVolume(std::nan(""));
    profile_->setPlayBackVolume(std::nan(""));
    EXPECT_EQ(0.5, profile_->ringerVolume());
    EXPECT_EQ(0.0, profile_->playBackVolume());
    EXPECT_EQ(4U, phone_.log->lines().size());
}

TEST_F(Profile, valueOfTheWrongType_changesNothingAndLogsKeyAndType) {
    const Dictionary before = profile_->storedValues();
    const std::vector<std::pair<const char*, Value>> refused{{"title", 5},
                                                             {"title", Value()},
                                                             {"startTime", true},
                                                             {"alertToneIdentifier", 1.5},
                                                             {"wifiNetworks", "x"},
                                                             {"wifiNetworks", Array{"a", 1}},
                                                             {"applyProfileEventStatus", true},
                                                             {"applyProfileEventStatus", 1.0},
                                                             {"calendarIdentifiers", Dictionary{}}};
    for (const auto& [key, value] : refused) profile_->setValue_forKey(value, key);
    EXPECT_EQ(before, profile_->storedValues());
    EXPECT_THAT(profile_->edit().set, IsEmpty());
    const auto lines = phone_.log->lines();
    ASSERT_EQ(refused.size(), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_THAT(lines[i], HasSubstr('"' + std::string(refused[i].first) + '"'));
        EXPECT_THAT(lines[i], HasSubstr(std::string(quietrix::nameOfType(refused[i].second.type()))));
    }
}

TEST_F(Profile, unknownKey_givesNilAndOneLogLine) {
    EXPECT_EQ(Value(), profile_->valueForKey("playbackVolumeSilented"));
    profile_->setValue_forKey("x", "playbackVolumeSilented");
    EXPECT_THAT(phone_.log->lines(),
                ElementsAre(HasSubstr("\"playbackVolumeSilented\""),
                            AllOf(HasSubstr("\"playbackVolumeSilented\""), HasSubstr("a string"))));
    EXPECT_THAT(profile_->edit().set, IsEmpty());
}

TEST_F(Profile, readOnlyKeys_cannotBeSet) {
    profile_->setValue_forKey(platform::Date{0}, "startDate");
    profile_->setValue_forKey("All", "applyProfileEventStatusString");
    EXPECT_THAT(phone_.log->lines(), ElementsAre(HasSubstr("read-only"), HasSubstr("read-only")));
    EXPECT_THAT(profile_->edit().set, IsEmpty());
}

TEST_F(Profile, tone_canBeTakenAway) {
    profile_->setValue_forKey("texttone:Chord", "alertToneIdentifier");
    profile_->setValue_forKey(Value(), "alertToneIdentifier");
    EXPECT_EQ(std::nullopt, profile_->alertToneIdentifier());
    EXPECT_EQ(Value(), profile_->valueForKey("alertToneIdentifier"));
    EXPECT_THAT(phone_.log->lines(), IsEmpty());
}

TEST_F(Profile, dates_carryTheTimesOfDay) {
    profile_->setStartTime("12:00 AM");
    profile_->setEndTime("9:05 PM");
    EXPECT_EQ("0:0:0", timeOfDay(profile_->startDate()));
    EXPECT_EQ("21:5:0", timeOfDay(profile_->endDate()));
    EXPECT_EQ(Value(*required(profile_->endDate())), profile_->valueForKey("endDate"));
}

TEST_F(Profile, timeThatIsNone_givesNoDate) {
    for (const char* text : {"", "soon", "13:00 PM", "9:00"}) {
        profile_->setStartTime(text);
        EXPECT_EQ("none", timeOfDay(profile_->startDate())) << text;
        EXPECT_EQ(Value(), profile_->valueForKey("startDate")) << text;
        EXPECT_EQ(text, profile_->startTime());
    }
}

TEST_F(Profile, eventStatus_hasATextForEachOfItsCodes) {
    const std::vector<std::pair<std::int64_t, std::string>> texts{
        {0, "All"},
        {1, "Accepted"},
        {2, "Tentative"},
        {3, "Declined/Cancelled"},
        {4, ""},
        {-1, ""},
        {std::numeric_limits<std::int64_t>::min(), ""}};
    for (const auto& [status, text] : texts) {
        profile_->setApplyProfileEventStatus(status);
        EXPECT_EQ(text, profile_->applyProfileEventStatusString()) << status;
        EXPECT_EQ(Value(text), profile_->valueForKey("applyProfileEventStatusString")) << status;
        EXPECT_EQ(status, profile_->applyProfileEventStatus());
    }
}

TEST_F(Profile, wifiNetwork_isThereOnceHoweverOftenItIsAdded) {
    profile_->addToWiFiNetwork("Home");
    profile_->addToWiFiNetwork("Office");
    profile_->addToWiFiNetwork("Home");
    EXPECT_THAT(profile_->wifiNetworks(), ElementsAre("Home", "Office"));
    EXPECT_TRUE(profile_->hasWiFiNetwork("Home"));
    EXPECT_FALSE(profile_->hasWiFiNetwork("home"));
    profile_->removeFromWiFiNetwork("Home");
    EXPECT_THAT(profile_->wifiNetworks(), ElementsAre("Office"));
    EXPECT_FALSE(profile_->hasWiFiNetwork("Home"));
}

TEST_F(Profile, absentWifiNetwork_isRemovedWithoutEffect) {
    profile_->addToWiFiNetwork("Home");
    profile_->removeFromWiFiNetwork("Office");
    EXPECT_THAT(profile_->wifiNetworks(), ElementsAre("Home"));
}

TEST_F(Profile, calendars_changeInPlace) {
    profile_->mutableCalendarIdentifiers().emplace_back("c1");
    profile_->mutableCalendarIdentifiers().emplace_back("c2");
    EXPECT_THAT(profile_->calendarIdentifiers(), ElementsAre("c1", "c2"));
    profile_->setCalendarIdentifiers({"c3"});
    EXPECT_EQ(Value(Array{"c3"}), profile_->valueForKey("calendarIdentifiers"));
}

TEST_F(Profile, firstChange_isReportedOnceUnderTheOldIdentifier) {
    const auto changed = std::make_shared<quietrix::ChangedProfiles>();
    profile_->setIdentifier("before");
    const auto handedOut = QXProfile::profileWithValues(profile_->storedValues());
    handedOut->reportChangesTo(changed);
    EXPECT_THAT(changed->take(), IsEmpty());
    handedOut->setIdentifier("after");
    handedOut->setTitle("x");
    const auto entries = changed->take();
    ASSERT_EQ(1U, entries.size());
    EXPECT_EQ("before", entries[0].identifier);
    EXPECT_EQ(handedOut, entries[0].record.lock());
    EXPECT_THAT(changed->take(), IsEmpty());
}

TEST_F(Profile, class_isFoundByItsName) {
    const auto made = platform::ClassRegistry::shared().make<QXProfile>("QXProfile");
    ASSERT_TRUE(made);
    EXPECT_EQ("QXProfile", (*made)->getClass().name());
}

TEST_F(Profile, keys_areDeclaredOnceAndHaveDefaultsTheyTake) {
    std::set<std::string_view> names;
    for (const auto& key : quietrix::profileKeys()) {
        EXPECT_TRUE(names.insert(key.name).second) << key.name;
        EXPECT_EQ(&key, quietrix::profileKey(key.name));
        EXPECT_EQ(key.storage == KeyStorage::Derived, key.set == nullptr) << key.name;
        if (key.set) {
            EXPECT_TRUE(key.set(*profile_, key.defaultAsValue())) << key.name;
        }
    }
    EXPECT_EQ(nullptr, quietrix::profileKey("nothing"));
}

}  // namespace
