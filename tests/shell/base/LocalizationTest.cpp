// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "shell/base/Localization.h"
#include "tests/doubles/PluginPhone.h"

namespace quietrix {
namespace {

class Localization : public testing::Test {
  protected:
    doubles::PluginPhone phone_;
};

TEST_F(Localization, keyInThePluginsBundle_givesItsTranslation) {
    phone_.facts->languages = {"de"};
    EXPECT_EQ("Aktive Profile", localized("Active Profiles"));
}

TEST_F(Localization, languageChanged_isFollowedAtTheNextUse) {
    phone_.facts->languages = {"de"};
    const std::string german = localized("Delete");
    phone_.facts->languages = {"fr"};
    EXPECT_NE(german, localized("Delete"));
}

TEST_F(Localization, keyThatTheBundleLacks_givesTheKey) {
    phone_.facts->languages = {"de"};
    // Of the host's keys only: the plug-in's bundle is there, so the host is not asked.
    EXPECT_EQ("Information", localized("Information"));
}

TEST_F(Localization, withoutThePluginsBundle_fallsBackToTheMainBundle) {
    phone_.facts->languages = {"de"};
    phone_.removePluginBundle();
    EXPECT_EQ(localizedInMainBundle("Cancel"), localized("Cancel"));
    EXPECT_EQ("Abbrechen", localized("Cancel"));
    EXPECT_EQ("Active Profiles", localized("Active Profiles"));
}

TEST_F(Localization, format_takesItsArgumentsInOrder) {
    EXPECT_EQ("a - b", stringWithFormat("%@ - %@", {"a", "b"}));
    EXPECT_EQ("%@ stays in an argument, 100%", stringWithFormat("%@, 100%", {"%@ stays in an argument"}));
    EXPECT_EQ("x", stringWithFormat("%@%@", {"x"}));
}

}  // namespace
}  // namespace quietrix
