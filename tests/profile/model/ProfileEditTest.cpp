// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "profile/model/ProfileEdit.h"
#include "profile/model/QXProfile.h"
#include "profile/model/QXProfileKeys.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::required;
using platform::Array;
using platform::Dictionary;
using platform::Value;
using quietrix::KeyType;
using quietrix::ProfileEdit;
using quietrix::QXProfile;
using testing::ElementsAre;
using testing::IsEmpty;

class Edit : public testing::Test {
  protected:
    /// A record as the store hands it out, made from these values.
    static std::shared_ptr<QXProfile> recordOf(Dictionary values = {}) {
        values.emplace("identifier", "A");
        return QXProfile::profileWithValues(values);
    }
    static std::vector<std::string> setKeys(const QXProfile& record) {
        std::vector<std::string> names;
        for (const auto& [name, base] : record.edit().set) names.emplace_back(name);
        return names;
    }
    static Array listAfter(const QXProfile& record, Array present, std::string_view key = "wifiNetworks") {
        const Dictionary stored = record.edit().appliedTo({{std::string(key), std::move(present)}});
        return *required(stored.at(std::string(key)).array());
    }

    doubles::Phone phone_;
};

TEST_F(Edit, recordThatWasMade_hasNothingSet) {
    EXPECT_THAT(setKeys(*recordOf({{"title", "Work"}, {"wifiNetworks", Array{"Home"}}})), IsEmpty());
    EXPECT_THAT(setKeys(QXProfile()), IsEmpty());
    EXPECT_THAT(setKeys(*QXProfile::defaultProfile()), IsEmpty());
}

TEST_F(Edit, eachKey_countsAsSetAloneAndAlsoWithTheValueThatItHas) {
    for (const auto& key : quietrix::profileKeys()) {
        if (!key.isStored()) continue;
        const auto record = recordOf();
        record->setValue_forKey(record->valueForKey(key.name), key.name);
        EXPECT_THAT(setKeys(*record), ElementsAre(key.name));
    }
}

TEST_F(Edit, operationsOnLists_countAsSettings) {
    const auto record = recordOf({{"wifiNetworks", Array{"Home"}}});
    record->addToWiFiNetwork("Home");
    record->removeFromWiFiNetwork("Office");
    EXPECT_THAT(setKeys(*record), IsEmpty());
    record->addToWiFiNetwork("Office");
    EXPECT_THAT(setKeys(*record), ElementsAre("wifiNetworks"));
    record->mutableCalendarIdentifiers().emplace_back("c");
    EXPECT_THAT(setKeys(*record), ElementsAre("calendarIdentifiers", "wifiNetworks"));
}

TEST_F(Edit, refusedValues_areNoSettings) {
    const auto record = recordOf();
    for (const auto& [key, value] : std::vector<std::pair<const char*, Value>>{
             {"title", 5}, {"enabled", 2}, {"ringerVolume", std::nan("")}, {"wifiNetworks", Array{1}}}) {
        record->setValue_forKey(value, key);
    }
    record->setRingerVolume(std::nan(""));
    record->setNewProfile(true);
    EXPECT_THAT(setKeys(*record), IsEmpty());
}

TEST_F(Edit, keyThatWasNotSet_keepsWhatTheFileHasNow) {
    const auto record = recordOf({{"title", "read"}, {"alertToneIdentifier", "texttone:Bell"}});
    record->setVibrate(false);
    const Dictionary stored =
        record->edit().appliedTo({{"identifier", "A"}, {"title", "theirs"}, {"ringerVolume", 1}});
    EXPECT_EQ(Value("theirs"), stored.at("title"));
    EXPECT_EQ(Value(1.0), stored.at("ringerVolume"));
    EXPECT_EQ(Value(false), stored.at("vibrate"));
    EXPECT_FALSE(stored.contains("alertToneIdentifier"));
    // The file holds the record whole: what it lacks is written as what it stands for.
    EXPECT_EQ(Value("9:00 AM"), stored.at("startTime"));
}

TEST_F(Edit, keyThatWasSet_takesTheRecordsValueWhateverItWas) {
    const auto record = recordOf({{"title", "read"}, {"alertToneIdentifier", "texttone:Bell"}});
    record->setTitle("other");
    record->setTitle("read");
    record->setAlertToneIdentifier(std::nullopt);
    const Dictionary stored =
        record->edit().appliedTo({{"title", "theirs"}, {"alertToneIdentifier", "texttone:Chord"}});
    EXPECT_EQ(Value("read"), stored.at("title"));
    EXPECT_FALSE(stored.contains("alertToneIdentifier"));
}

TEST_F(Edit, valueOfATypeNoRecordKnows_staysUntilItsKeyIsSet) {
    const Dictionary theirs{{"identifier", "A"},      {"title", 7},
                            {"enabled", "yes"},       {"ringerVolume", Dictionary{{"left", 0.5}}},
                            {"wifiNetworks", "Home"}, {"calendarIdentifiers", Array{"c1", 2, "c3"}}};
    const auto record = recordOf(theirs);
    EXPECT_EQ(5U, phone_.log->lines().size());
    EXPECT_THAT(record->calendarIdentifiers(), ElementsAre("c1", "c3"));
    record->setVibrate(false);
    Dictionary stored = record->edit().appliedTo(theirs);
    for (const auto& [key, value] : theirs) EXPECT_EQ(value, stored.at(key)) << key;

    record->setTitle("Work");
    record->setWifiNetworks({"Office"});
    record->setRingerVolume(0.5);
    stored = record->edit().appliedTo(theirs);
    EXPECT_EQ(Value("Work"), stored.at("title"));
    EXPECT_EQ(Value(Array{"Office"}), stored.at("wifiNetworks"));
    EXPECT_EQ(Value(0.5), stored.at("ringerVolume"));
    EXPECT_EQ(Value("yes"), stored.at("enabled"));
}

TEST_F(Edit, listThatWasSet_isMergedElementByElement) {
    const auto record = recordOf({{"wifiNetworks", Array{"a", "b", "c"}}});
    record->removeFromWiFiNetwork("b");
    record->addToWiFiNetwork("x");
    record->addToWiFiNetwork("y");
    EXPECT_EQ((Array{"z", "c", "a", "x", "y"}), listAfter(*record, {"z", "c", "b", "a"}));
    EXPECT_EQ((Array{"y", "x"}), listAfter(*record, {"y", "b"})) << "taken away by others, and added by both";
    EXPECT_EQ((Array{"x", "y"}), listAfter(*record, {}));
}

TEST_F(Edit, elementsThatAreNoStrings_stayWhenTheListIsChanged) {
    const auto record = recordOf({{"calendarIdentifiers", Array{"c1", 2, "c3"}}});
    auto& chosen = record->mutableCalendarIdentifiers();
    std::erase(chosen, "c1");
    chosen.emplace_back("c4");
    EXPECT_EQ((Array{2, "c3", "c4"}), listAfter(*record, {"c1", 2, "c3"}, "calendarIdentifiers"));
}

TEST_F(Edit, alone_leavesExactlyTheRecord) {
    std::mt19937 random(14);
    for (int round = 0; round < 300; ++round) {
        const auto list = [&random] {
            Array made;
            for (auto left = random() % 5; left > 0; --left)
                made.emplace_back(std::string(1, char('a' + random() % 4)));
            return made;
        };
        Dictionary theirs{{"identifier", "A"}, {"wifiNetworks", list()}, {"calendarIdentifiers", list()}};
        if (random() % 2) theirs.emplace("title", "theirs");
        const auto record = recordOf(theirs);
        for (const auto& key : quietrix::profileKeys()) {
            if (!key.set || key.name == "identifier" || random() % 2) continue;
            if (key.type == KeyType::TextList) record->setValue_forKey(list(), key.name);
            if (key.type == KeyType::Boolean) record->setValue_forKey(random() % 2 == 0, key.name);
            if (key.type == KeyType::Text) record->setValue_forKey("mine", key.name);
        }
        if (random() % 2) record->addToWiFiNetwork("b");
        ASSERT_EQ(Value(record->storedValues()), Value(record->edit().appliedTo(theirs)));
    }
}

TEST_F(Edit, whatWasStored_isWhatTheRecordIsMadeFrom) {
    const auto record = recordOf({{"title", "read"}, {"wifiNetworks", Array{"a"}}});
    record->setTitle("mine");
    record->addToWiFiNetwork("b");
    record->wasStored(record->edit());
    EXPECT_THAT(setKeys(*record), IsEmpty());
    EXPECT_EQ("mine", record->title());

    record->removeFromWiFiNetwork("b");
    EXPECT_EQ((Array{"a", "c"}), listAfter(*record, {"a", "b", "c"}));
}

TEST_F(Edit, keyThatWasSetAfterTheHandOver_staysSet) {
    const auto record = recordOf({{"wifiNetworks", Array{"a"}}, {"calendarIdentifiers", Array{"c"}}});
    record->setTitle("handed over");
    record->setVibrate(false);
    record->addToWiFiNetwork("b");
    const ProfileEdit edit = record->edit();
    record->setTitle("handed over");
    record->addToWiFiNetwork("d");
    record->setEnabled(true);
    record->wasStored(edit);
    EXPECT_THAT(setKeys(*record), ElementsAre("enabled", "title", "wifiNetworks"));
    // "b" is in the file already: whoever takes it away from there is not undone.
    EXPECT_EQ((Array{"a", "d"}), listAfter(*record, {"a"}));
}

}  // namespace
