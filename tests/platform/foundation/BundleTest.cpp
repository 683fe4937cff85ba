// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Object.h"
#include "platform/foundation/PropertyList.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using doubles::errorOf;
using doubles::required;

class FixtureTakenName : public platform::Object {
    PLATFORM_CLASS(FixtureTakenName, platform::Object)
};
PLATFORM_REGISTER_CLASS(FixtureTakenName)

using platform::Bundle;
using platform::ClassRegistry;
using platform::Dictionary;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Result;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Bundles in a file system in memory; only the code that they name is a file of the host, in the directory
/// that has the same path on both.
class BundleTest : public testing::Test {
  protected:
    ~BundleTest() override {
        Bundle::setMainBundlePath("");
        Bundle::setBundlePathForLinkedClasses("");
    }
    void putInfo(const std::string& bundle, const Dictionary& info) {
        phone.files->put(bundle + "/Info.plist",
                         *PropertyListSerialization::dataWithPropertyList(info, PropertyListFormat::XML));
    }
    /// The bundle of the built fixtures with that one as its executable.
    Bundle fixture(const std::string& executable, std::int64_t version = platform::platformInterfaceVersion) {
        putInfo(fixtures, {{"CFBundleExecutable", executable},
                           {"PlatformInterfaceVersion", version},
                           {"NSPrincipalClass", "FixtureScreen"}});
        return Bundle(fixtures);
    }

    doubles::Phone phone;
    const std::string path = "/Library/Some.bundle";
    const std::string fixtures = FIXTURE_DIRECTORY;
};

TEST_F(BundleTest, bundleWithPath_needsADirectory) {
    EXPECT_EQ(Bundle::bundleWithPath(path), nullptr);
    putInfo(path, {{"a", 1}});
    ASSERT_NE(Bundle::bundleWithPath(path), nullptr);
    EXPECT_EQ(Bundle::bundleWithPath(path + "/Info.plist"), nullptr);
    EXPECT_EQ(Bundle::bundleWithPath(path)->bundlePath(), path);
    EXPECT_EQ(Bundle::bundleWithPath(path)->infoDictionary(), (Dictionary{{"a", 1}}));
}

TEST_F(BundleTest, infoList_isReadOnceForEachBundle) {
    putInfo(path, {{"a", 1}});
    const Bundle bundle(path);
    EXPECT_EQ(bundle.infoDictionary().size(), 1U);
    putInfo(path, {{"a", 1}, {"b", 2}});
    EXPECT_EQ(bundle.infoDictionary().size(), 1U);
    EXPECT_EQ(phone.files->reads(path + "/Info.plist"), 1);
    EXPECT_EQ(Bundle(path).infoDictionary().size(), 2U);
}

TEST_F(BundleTest, resources_areFoundAtTheTop) {
    phone.files->put(path + "/nav@2x.png", "image");
    const Bundle bundle(path);
    EXPECT_EQ(bundle.pathForResource_ofType("nav@2x", "png"), path + "/nav@2x.png");
    EXPECT_EQ(bundle.pathForResource_ofType("nav@2x.png", ""), path + "/nav@2x.png");
    EXPECT_EQ(bundle.pathForResource_ofType("nav", "png"), "");
    EXPECT_EQ(bundle.pathForResource_ofType("", "png"), "");
}

TEST_F(BundleTest, localizedString_comesFromTheFirstPreferredLanguageWithATable) {
    phone.files->put(path + "/zh-Hans.lproj/Localizable.strings", "\"Delete\" = \"删除\";");
    phone.files->put(path + "/de.lproj/Localizable.strings", "\"Delete\" = \"Löschen\"; \"Only\" = \"Nur\";");
    const auto text = [&](std::vector<std::string> languages, std::string_view key) {
        phone.facts->languages = std::move(languages);
        return Bundle(path).localizedStringForKey_value_table(key, "", "");
    };
    EXPECT_EQ(text({"zh-Hans-CN", "de"}, "Delete"), "删除");
    EXPECT_EQ(text({"zh-Hant-TW", "de-AT"}, "Delete"), "Löschen");
    EXPECT_EQ(text({"fr", "de"}, "Delete"), "Löschen");
    EXPECT_EQ(text({"zh-Hans", "de"}, "Only"), "Only");
    EXPECT_EQ(text({"fr"}, "Delete"), "Delete");
    EXPECT_EQ(text({"../de", "", "-"}, "Delete"), "Delete");
}

TEST_F(BundleTest, localizedString_fallsBackToTheDevelopmentRegionAndTheDefault) {
    phone.files->put(path + "/de.lproj/Localizable.strings", "\"Delete\" = \"Löschen\";");
    phone.files->put(path + "/en.lproj/Other.strings", "\"Delete\" = \"Remove\";");
    phone.facts->languages = {"fr"};
    const Bundle bundle(path);
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Delete", "default", ""), "default");
    EXPECT_EQ(bundle.localizedStringForKey_value_table("Delete", "", "Other"), "Remove");
    putInfo(path, {{"CFBundleDevelopmentRegion", "de"}});
    EXPECT_EQ(Bundle(path).localizedStringForKey_value_table("Delete", "", ""), "Löschen");
    EXPECT_EQ(Bundle(path).localizedStringForKey_value_table("Missing", "", ""), "Missing");
    EXPECT_EQ(Bundle(path).localizedStringForKey_value_table("Missing", "default", ""), "default");
}

TEST_F(BundleTest, stringTable_isReadAgainOnlyWhenItHasChanged) {
    const std::string table = path + "/en.lproj/Localizable.strings";
    const auto text = [&] { return Bundle(path).localizedStringForKey_value_table("a", "", ""); };
    phone.files->put(table, "\"a\" = \"1\";");
    EXPECT_EQ(text(), "1");
    EXPECT_EQ(text(), "1");
    EXPECT_EQ(phone.files->reads(table), 1);
    phone.files->put(table, "\"a\" = \"2\";");
    EXPECT_EQ(text(), "2");
    phone.files = std::make_shared<doubles::MemoryFileSystem>();
    phone.install();
    EXPECT_EQ(text(), "a");
    phone.files->put(table, "\"a\" = \"3\";");
    EXPECT_EQ(text(), "3");
}

TEST_F(BundleTest, stringTableThatCannotBeLookedAt_staysAsItWasRead) {
    const std::string table = path + "/en.lproj/Localizable.strings";
    const auto text = [&] { return Bundle(path).localizedStringForKey_value_table("a", "", ""); };
    phone.files->put(table, "\"a\" = \"1\";");
    EXPECT_EQ(text(), "1");
    phone.files->failStamps("Input/output error", table);
    EXPECT_EQ(text(), "1");
    phone.files->failStamps("", table);
    EXPECT_TRUE(phone.files->remove(table));
    EXPECT_EQ(text(), "a");
    phone.files->failStamps("Input/output error", table);
    EXPECT_EQ(text(), "a");
}

TEST_F(BundleTest, damagedStringTable_isLoggedOnceAndPassedOver) {
    phone.files->put(path + "/de.lproj/Localizable.strings", "\"a\" = ");
    phone.files->put(path + "/en.lproj/Localizable.strings", "\"a\" = \"1\";");
    phone.facts->languages = {"de"};
    for (int i = 0; i < 2; ++i) EXPECT_EQ(Bundle(path).localizedStringForKey_value_table("a", "", ""), "1");
    EXPECT_THAT(phone.log->lines(),
                ElementsAre(StartsWith("The string table \"" + path +
                                       "/de.lproj/Localizable.strings\" cannot be read: The string "
                                       "table is damaged at line 1: ")));
}

TEST_F(BundleTest, mainBundle_isThereWithoutADirectory) {
    ASSERT_NE(Bundle::mainBundle(), nullptr);
    EXPECT_EQ(Bundle::mainBundle()->localizedStringForKey_value_table("Error", "", ""), "Error");
    EXPECT_EQ(Bundle::mainBundle()->pathForResource_ofType("a", "png"), "");
    EXPECT_TRUE(Bundle::mainBundle()->infoDictionary().empty());
    phone.files->put("/Applications/Settings.app/a.png", "image");
    Bundle::setMainBundlePath("/Applications/Settings.app/");
    EXPECT_EQ(Bundle::mainBundle()->pathForResource_ofType("a", "png"), "/Applications/Settings.app/a.png");
}

TEST_F(BundleTest, bundleForClass_ofALinkedClass_isTheOneSetOrTheMainBundle) {
    Bundle::setMainBundlePath("/main");
    EXPECT_EQ(Bundle::bundleForClass(FixtureTakenName::staticClass())->bundlePath(), "/main");
    Bundle::setBundlePathForLinkedClasses("/linked");
    EXPECT_EQ(Bundle::bundleForClass(FixtureTakenName::staticClass())->bundlePath(), "/linked");
}

TEST_F(BundleTest, load_bringsTheBundlesClasses) {
    Bundle bundle = fixture("Good");
    ASSERT_EQ(errorOf(bundle.load()), "no error");
    EXPECT_EQ(errorOf(bundle.load()), "no error");
    const auto principal = bundle.principalClass();
    ASSERT_TRUE(principal);
    EXPECT_EQ((*principal)->name(), "FixtureScreen");
    EXPECT_TRUE((*principal)->make());
    EXPECT_EQ(Bundle::bundleForClass(**principal)->bundlePath(), fixtures);
    EXPECT_EQ(ClassRegistry::shared().bundlePath(FixtureTakenName::staticClass()), "");
}

TEST_F(BundleTest, load_byAnotherPath_opensTheSameCodeOnce) {
    ASSERT_TRUE(fixture("Good").load());
    const testing_support::TemporaryDirectory directory;
    const std::string link = directory.path();
    std::filesystem::create_symlink(fixtures + "/Good", directory / "Good");
    putInfo(link, {{"CFBundleExecutable", "Good"}, {"PlatformInterfaceVersion", 1}});
    EXPECT_EQ(errorOf(Bundle(link).load()), "no error");
    EXPECT_EQ(Bundle::bundleForClass(*required(ClassRegistry::shared().find("FixtureScreen")))->bundlePath(),
              fixtures);
}

TEST_F(BundleTest, load_ofAnotherInterfaceVersion_runsNoneOfTheCode) {
    EXPECT_EQ(errorOf(fixture("Marked", 0).load()),
              "The bundle \"" + fixtures +
                  "\" was built for interface version 0; this system has version 1: build it anew for that.");
    putInfo(fixtures, {{"CFBundleExecutable", "Marked"}});
    EXPECT_EQ(errorOf(Bundle(fixtures).load()),
              "The bundle \"" + fixtures +
                  "\" does not say for which interface version it was built; this "
                  "system has version 1.");
    EXPECT_EQ(::getenv("FIXTURE_MARKED_RAN"), nullptr);
}

TEST_F(BundleTest, load_ofATakenClassName_failsEachTime) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(errorOf(fixture("Duplicate").load()),
                  "The bundle \"" + fixtures +
                      "\" brings a class named \"FixtureTakenName\", but there is one already.");
    }
    EXPECT_EQ(ClassRegistry::shared().find("FixtureTakenName"), &FixtureTakenName::staticClass());
}

TEST_F(BundleTest, load_ofCodeThatTheLoaderRefuses_saysWhy) {
    EXPECT_THAT(errorOf(fixture("Unresolved").load()),
                testing::AllOf(StartsWith("The bundle \"" + fixtures + "\" cannot be loaded: "),
                               HasSubstr("aSymbolThatNobodyDefines")));
    EXPECT_THAT(errorOf(fixture("Missing").load()), HasSubstr("cannot be loaded: "));
}

TEST_F(BundleTest, load_withoutAUsableInfoList_saysWhatIsWrong) {
    EXPECT_EQ(errorOf(Bundle(path).load()),
              "The bundle \"" + path + "\" has no usable Info list: The file \"" + path +
                  "/Info.plist\" could not be read: No such file or directory.");
    phone.files->put(path + "/Info.plist", "hello");
    EXPECT_THAT(errorOf(Bundle(path).load()), HasSubstr("has no usable Info list: This is no property list"));
    phone.files->put(path + "/Info.plist", "<plist><array/></plist>");
    EXPECT_THAT(errorOf(Bundle(path).load()), HasSubstr("Its root is no dictionary."));
    putInfo(path, {});
    EXPECT_THAT(errorOf(Bundle(path).load()), HasSubstr("It is empty."));
    putInfo(path, {{"PlatformInterfaceVersion", 1}});
    EXPECT_EQ(errorOf(Bundle(path).load()),
              "The bundle \"" + path + "\" names no executable in its Info list.");
    putInfo(path, {{"PlatformInterfaceVersion", 1}, {"CFBundleExecutable", "../a"}});
    EXPECT_THAT(errorOf(Bundle(path).load()), HasSubstr("names \"../a\" as its executable"));
}

TEST_F(BundleTest, principalClass_tellsItsFailuresApart) {
    putInfo(path, {{"a", 1}});
    EXPECT_EQ(errorOf(Bundle(path).principalClass()),
              "The bundle \"" + path + "\" names no principal class in its Info list.");
    putInfo(path, {{"NSPrincipalClass", "NoSuch"}});
    EXPECT_EQ(errorOf(Bundle(path).principalClass()),
              "The bundle \"" + path +
                  "\" names the principal class \"NoSuch\", but there is no class of that name.");
}

}  // namespace
