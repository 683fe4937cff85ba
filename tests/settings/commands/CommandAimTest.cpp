// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/preferences/PSEditableListController.h"
#include "platform/uikit/UIAlertController.h"
#include "settings/application/TopScreen.h"
#include "tests/doubles/Required.h"
#include "tests/settings/TestList.h"

namespace {

using doubles::required;
using fixtures::Desk;
using fixtures::plainRow;
using platform::Array;
using platform::Dictionary;
using platform::PSCellType;
using platform::UIAlertController;
using platform::Value;

/// A button row that writes down that it was pressed.
class Presses : public platform::Object {
  public:
    void pressed(const std::shared_ptr<platform::PSSpecifier>& row) { names.push_back(*row->name()); }
    std::vector<std::string> names;
};

class CommandAim : public testing::Test {
  protected:
    using Fields = Dictionary;

    Value send(const std::string& command, Fields fields = {}) {
        fields.emplace("do", command);
        return desk_.answer(settings::jsonText(fields));
    }
    /// Sends what must be refused and change nothing, and gives the answer.
    Value refused(const std::string& command, Fields fields) {
        const Value before = send("state");
        const Value answer = send(command, std::move(fields));
        EXPECT_EQ(answer["ok"], Value(false));
        EXPECT_FALSE(answer["error"].stringOr().empty());
        EXPECT_EQ(answer["state"]["screen"], before["state"]["screen"]);
        EXPECT_EQ(answer["state"]["presented"], before["state"]["presented"]);
        EXPECT_EQ(answer["state"]["revision"], before["state"]["revision"]);
        EXPECT_EQ(answer["state"]["events"], Value(Array{}));
        return answer;
    }
    bool isStale(const std::string& command, Fields fields) {
        return refused(command, std::move(fields))["stale"] == Value(true);
    }
    bool isMistake(const std::string& command, Fields fields) {
        return refused(command, std::move(fields))["stale"].isNil();
    }
    std::shared_ptr<platform::PSSpecifier> button(const std::string& name) {
        const auto row = plainRow(name, PSCellType::Button);
        row->setTarget(presses_);
        row->setButtonAction(platform::method("pressed:", &Presses::pressed));
        return row;
    }
    Value keyOf(const std::string& name) {
        const Value answer = send("state");
        for (const Value& row : Desk::rows(answer)) {
            if (row["name"] == Value(name)) return row["key"];
        }
        return {};
    }
    Value screen() { return send("state")["state"]["screen"]["id"]; }
    Value presented() { return send("state")["state"]["presented"]["id"]; }
    void present(const std::string& title) {
        const auto alert =
            std::make_shared<UIAlertController>(title, "Text", platform::UIAlertControllerStyleAlert);
        alert->addAction({"Close", platform::UIAlertActionStyleCancel, {}});
        desk_.list->presentViewController_animated_completion(alert, true, {});
    }

    Desk desk_;
    std::shared_ptr<Presses> presses_ = std::make_shared<Presses>();
};

TEST_F(CommandAim, screens_haveANumberOfTheirOwnEachTime) {
    const Value first = screen();
    EXPECT_TRUE(first.unsignedInteger());
    EXPECT_EQ(screen(), first);
    const auto other = std::make_shared<fixtures::TestList>();
    other->setRows({});
    settings::TopScreen::now().navigation->pushViewController_animated(other, false);
    const Value second = screen();
    EXPECT_NE(second, first);
    send("back");
    EXPECT_EQ(screen(), first);
    send("open");
    const Value opened = screen();
    send("open");
    EXPECT_NE(screen(), opened);
}

TEST_F(CommandAim, otherScreen_isStaleForEveryCommand) {
    desk_.list->setRows({button("Press")});
    const Value here = screen();
    const Value elsewhere(*required(here.integer()) + 1000);
    for (const auto& [command, fields] :
         std::vector<std::pair<std::string, Fields>>{{"state", {}},
                                                     {"tap", {{"row", 0}}},
                                                     {"set", {{"row", 0}, {"value", true}}},
                                                     {"delete", {{"row", 0}}},
                                                     {"edit", {{"on", true}}},
                                                     {"bar", {{"side", "left"}, {"item", 0}}},
                                                     {"back", {}},
                                                     {"choose", {{"action", "Close"}}},
                                                     {"pickTimeRow", {{"row", 0}}},
                                                     {"pickTime", {{"time", "5:00 PM"}}},
                                                     {"pickTone", {{"identifier", nullptr}}},
                                                     {"compose", {{"result", "sent"}}},
                                                     {"post", {{"name", "a"}}},
                                                     {"dark", {{"on", true}}},
                                                     {"advance", {{"seconds", 1}}},
                                                     {"wait", {{"event", "push"}, {"seconds", 0}}},
                                                     {"link", {{"item", 0}}},
                                                     {"open", {}}}) {
        Fields aimed = fields;
        aimed["screen"] = elsewhere;
        EXPECT_TRUE(isStale(command, aimed)) << command;
    }
    EXPECT_TRUE(presses_->names.empty());
    EXPECT_EQ(send("tap", {{"row", 0}, {"screen", here}})["ok"], Value(true));
    EXPECT_EQ(presses_->names, std::vector<std::string>{"Press"});
}

TEST_F(CommandAim, screenThatWasLeft_isStaleAndTheOneBeneathIsNot) {
    const Value beneath = screen();
    const auto other = std::make_shared<fixtures::TestList>();
    other->setRows({});
    settings::TopScreen::now().navigation->pushViewController_animated(other, false);
    const Value left = screen();
    EXPECT_EQ(send("back", {{"screen", left}})["ok"], Value(true));
    EXPECT_TRUE(isStale("back", {{"screen", left}})) << "the second of two quick presses";
    EXPECT_EQ(screen(), beneath);
}

TEST_F(CommandAim, whilePresented_theScreenIsTheOneBeneath) {
    const Value here = screen();
    present("Alert");
    EXPECT_EQ(screen(), here);
    EXPECT_TRUE(isStale("choose", {{"action", "Close"}, {"screen", *required(here.integer()) + 1000}}));
    EXPECT_TRUE(isStale("choose", {{"action", "Close"}, {"screen", presented()}}));
    EXPECT_TRUE(isMistake("back", {{"screen", here}})) << "the screen is there, but covered";
    EXPECT_EQ(send("choose", {{"action", "Close"}, {"screen", here}})["ok"], Value(true));
}

TEST_F(CommandAim, otherThingPresented_isStale) {
    present("First");
    const Value first = presented();
    EXPECT_EQ(presented(), first);
    send("choose", {{"action", "Close"}, {"presented", first}});
    EXPECT_TRUE(isStale("choose", {{"action", "Close"}, {"presented", first}})) << "nothing is presented";
    present("Second");
    EXPECT_NE(presented(), first);
    EXPECT_TRUE(isStale("choose", {{"action", "Close"}, {"presented", first}}));
    EXPECT_TRUE(isStale("compose", {{"result", "sent"}, {"presented", first}}));
    EXPECT_TRUE(isMistake("choose", {{"action", "Other"}, {"presented", presented()}}));
    EXPECT_EQ(send("choose", {{"action", "Close"}, {"presented", presented()}})["ok"], Value(true));
}

TEST_F(CommandAim, fieldsOfAWrongType_areMistakes) {
    desk_.list->setRows({button("Press")});
    const Value key = keyOf("Press");
    for (const Value& bad : {Value("1"), Value(-1), Value(1.5), Value(true), Value(), Value(Array{1})}) {
        EXPECT_TRUE(isMistake("tap", {{"row", 0}, {"screen", bad}})) << bad.description();
        EXPECT_TRUE(isMistake("tap", {{"row", 0}, {"presented", bad}})) << bad.description();
        if (!bad.string()) {
            EXPECT_TRUE(isMistake("tap", {{"row", 0}, {"key", bad}})) << bad.description();
        }
        if (bad.integer()) continue;
        EXPECT_TRUE(isMistake("tap", {{"key", key}, {"row", bad}})) << bad.description();
    }
    EXPECT_TRUE(isMistake("tap", {{"row", 0}, {"screen", "1"}, {"presented", 99999}}));
    EXPECT_TRUE(presses_->names.empty());
}

TEST_F(CommandAim, key_meansItsRowWhateverTheNumberSays) {
    desk_.list->setRows({button("A"), button("B"), button("C")});
    const Value b = keyOf("B");
    send("tap", {{"key", b}});
    desk_.list->setRows({button("C"), button("New"), button("A"), button("B")});
    send("tap", {{"key", b}});
    send("tap", {{"key", b}, {"row", 1}});
    send("tap", {{"key", b}, {"row", 99}});
    send("tap", {{"key", b}, {"row", -1}});
    EXPECT_EQ(presses_->names, (std::vector<std::string>{"B", "B", "B", "B", "B"}));
    EXPECT_EQ(keyOf("B"), b);
}

TEST_F(CommandAim, keyThatNoRowHas_isStale) {
    desk_.list->setRows({button("A"), button("B")});
    const Value b = keyOf("B");
    const std::string one = keyOf("A").stringOr();
    desk_.list->setRows({button("A"), button("C")});
    for (const char* command : {"tap", "set", "delete"}) {
        EXPECT_TRUE(isStale(command, {{"key", b}, {"value", true}}));
        EXPECT_TRUE(isStale(command, {{"key", b}, {"row", 1}, {"value", true}}));
    }
    for (const std::string& never :
         {std::string(), std::string("0"), std::string("-1"), "0" + one, one + " ", " " + one, "+" + one,
          one + "0000", std::string("index-0"), std::string("99999999999999999999999999")}) {
        EXPECT_TRUE(isStale("tap", {{"key", never}})) << never;
    }
    desk_.list->setRows({button("A"), button("C"), button("B")});
    EXPECT_TRUE(isStale("tap", {{"key", b}})) << "a row that comes back is a new one";
    EXPECT_TRUE(presses_->names.empty());
}

TEST_F(CommandAim, keyOnAScreenWithoutRows_isStale) {
    settings::TopScreen::now().navigation->pushViewController_animated(
        std::make_shared<platform::UIViewController>(), false);
    EXPECT_TRUE(isStale("tap", {{"key", "1"}}));
    EXPECT_TRUE(isMistake("tap", {{"row", 1}}));
}

TEST_F(CommandAim, rowThatIsThere_canStillBeAMistake) {
    desk_.list->setRows(
        {platform::PSSpecifier::groupSpecifierWithName("G"), plainRow("Text", PSCellType::StaticText)});
    EXPECT_TRUE(isMistake("tap", {{"key", keyOf("G")}}));
    EXPECT_TRUE(isMistake("tap", {{"key", keyOf("Text")}}));
    EXPECT_TRUE(isMistake("delete", {{"key", keyOf("Text")}}));
    present("Alert");
    EXPECT_TRUE(isMistake("tap", {{"key", keyOf("Text")}}));
}

TEST_F(CommandAim, keyOfAnotherScreensRow_isStale) {
    desk_.list->setRows({button("A")});
    const Value beneath = keyOf("A");
    const auto other = std::make_shared<fixtures::TestList>();
    other->setRows({button("A")});
    settings::TopScreen::now().navigation->pushViewController_animated(other, false);
    EXPECT_NE(keyOf("A"), beneath);
    EXPECT_TRUE(isStale("tap", {{"key", beneath}}));
}

TEST_F(CommandAim, rowThatIsDrawnAnewUnderItsKey_showsWhatItHasBecome) {
    const auto row = [](const std::string& name, int value) {
        const auto made = plainRow(name, PSCellType::TitleValue);
        made->setIdentifier("count");
        made->setProperty_forKey(value, "count");
        return made;
    };
    desk_.list->setRows({row("One", 1)});
    const Value before = send("state");
    desk_.list->setRows({row("Two", 2)});
    const Value after = send("state");
    EXPECT_EQ(Desk::rows(after).at(0)["key"], Desk::rows(before).at(0)["key"]);
    EXPECT_EQ(Desk::rows(after).at(0)["name"], Value("Two"));
    EXPECT_EQ(Desk::rows(after).at(0)["text"], Value("Two"));
    EXPECT_EQ(Desk::rows(after).at(0)["properties"]["count"], Value(2));
    EXPECT_GT(*required(after["state"]["revision"].integer()),
              *required(before["state"]["revision"].integer()));
}

}  // namespace
