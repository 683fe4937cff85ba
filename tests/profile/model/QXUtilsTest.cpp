// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "profile/model/QXUtils.h"
#include "tests/doubles/Phone.h"

using quietrix::QXUtils;

TEST(QXUtils, systemVersions_areComparedAsNumbers) {
    doubles::Phone phone;
    struct Case {
        const char* version;
        bool isIOS9;
        bool isIOS11;
    };
    for (const Case& each :
         {Case{"8.4.1", false, false}, Case{"9.0", true, false}, Case{"9.3.5", true, false},
          Case{"10.3", true, false}, Case{"11", true, true}, Case{"11.4", true, true},
          Case{"100.1", true, true}, Case{"", false, false}, Case{"beta", false, false}}) {
        phone.facts->version = each.version;
        EXPECT_EQ(each.isIOS9, QXUtils::isIOS9()) << each.version;
        EXPECT_EQ(each.isIOS11, QXUtils::isIOS11()) << each.version;
    }
}

TEST(QXUtils, darkMode_followsTheDevice) {
    doubles::Phone phone;
    EXPECT_FALSE(QXUtils::isDarkModeEnabled());
    phone.facts->setDarkMode(true);
    EXPECT_TRUE(QXUtils::isDarkModeEnabled());
    phone.facts->setDarkMode(false);
    EXPECT_FALSE(QXUtils::isDarkModeEnabled());
}

TEST(QXUtils, deviceWithoutFacts_answersNo) {
    doubles::Phone phone;
    phone.facts.reset();
    phone.install();
    EXPECT_FALSE(QXUtils::isIOS9());
    EXPECT_FALSE(QXUtils::isIOS11());
    EXPECT_FALSE(QXUtils::isDarkModeEnabled());
}

TEST(QXUtils, dateFormatter_isTheSameForAll) {
    QXUtils::dateFormatter().setDateFormat("h:mm a");
    EXPECT_EQ("h:mm a", QXUtils::dateFormatter().dateFormat());
}
