// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/channels/JSON.h"
#include "settings/recording/RecordingImages.h"
#include "settings/recording/RecordingViewer.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using doubles::required;
using platform::Dictionary;
using platform::Value;
using settings::RecordedMoments;
using settings::RecordingImages;
using settings::RecordingViewer;
using testing::HasSubstr;
using testing_support::TemporaryDirectory;

const std::string begun = R"({"time":0,"start":true})";

/// A command with a state that is known by its revision.
std::string answered(int time, int revision) {
    return R"({"time":)" + std::to_string(time) + R"(,"command":"{\"do\":\"state\"}","answer":{"ok":true,)" +
           R"("state":{"revision":)" + std::to_string(revision) +
           R"(,"device":{"clockRuns":true},"events":[{"event":"reload"}]}}})";
}

class RecordingViewerTest : public testing::Test {
  protected:
    /// The file with these lines behind the first one.
    std::string file(const std::vector<std::string>& lines) {
        std::string text =
            lineText(settings::RecordingStart{"1.2.3", {}, 1, "", "", "Sample.bundle", {}}) + "\n";
        for (const std::string& line : lines) text += line + "\n";
        return directory_.write("story.rec", text);
    }
    RecordingViewer viewer(const std::vector<std::string>& lines) {
        return RecordingViewer(*required(RecordedMoments::read(file(lines), [](std::uint64_t) {})));
    }
    std::string errorOf(const std::string& path) {
        const auto moments = RecordedMoments::read(path, [](std::uint64_t) {});
        return moments ? "" : moments.error().localizedDescription;
    }

    TemporaryDirectory directory_;
};

Dictionary ask(RecordingViewer& viewer, const std::string& line) {
    return *required(settings::parseJSON(viewer.answer(line)).value_or(Value()).dictionary());
}

/// The revision of the state that an answer has.
Value shown(const Dictionary& answer) {
    return (*required(answer.at("state").dictionary())).at("revision");
}

Dictionary momentAt(RecordingViewer& viewer, int at) {
    const Dictionary answer = ask(viewer, R"({"do":"moments","from":)" + std::to_string(at) + "}");
    return *required(required(answer.at("moments").array())->at(0).dictionary());
}

TEST_F(RecordingViewerTest, state_isTheLastOneAndSaysThatItIsARecording) {
    auto viewer = this->viewer({begun, answered(10, 1), answered(20, 2), R"({"time":30,"end":true})"});
    const Dictionary answer = ask(viewer, R"({"do":"state","id":7,"events":"all"})");
    EXPECT_EQ(answer.at("ok"), Value(true));
    EXPECT_EQ(answer.at("id"), Value(7));
    EXPECT_EQ(shown(answer), Value(2));
    const Dictionary& state = *required(answer.at("state").dictionary());
    EXPECT_EQ(
        state.at("recording"),
        Value(Dictionary{
            {"file", "story.rec"}, {"program", "1.2.3"}, {"moments", 4}, {"whole", true}, {"shown", 2}}));
    EXPECT_EQ(state.at("events"), Value(platform::Array()));
    EXPECT_EQ(required(state.at("device").dictionary())->at("clockRuns"), Value(false));
}

TEST_F(RecordingViewerTest, eachMoment_namesTheStatesBeforeAndAfterIt) {
    auto viewer = this->viewer({begun, answered(10, 1), R"({"time":15,"outside":{"notification":"Posted"}})",
                                R"({"time":20,"command":"{\"do\":\"wait\"}"})", R"({"time":25})",
                                R"({"time":30,"answer":{"ok":false,"error":"No.","state":{"revision":2}}})",
                                R"({"time":40,"outside":{"file":"/a","bytes":"AA=="}})"});
    const auto expectStates = [&](int at, const Value& before, const Value& after) {
        const Dictionary moment = momentAt(viewer, at);
        EXPECT_EQ(moment.at("before"), before) << at;
        EXPECT_EQ(moment.at("after"), after) << at;
        EXPECT_EQ(moment.at("line"), Value(at + 2));
    };
    expectStates(0, Value(), 1);
    expectStates(1, Value(), 1);
    expectStates(2, 1, 5);
    expectStates(3, 1, 5);
    expectStates(4, 1, 5);
    expectStates(5, 1, 5);
    expectStates(6, 5, Value());
    EXPECT_EQ(momentAt(viewer, 2).at("outside"), Value(Dictionary{{"notification", "Posted"}}));
    EXPECT_EQ(momentAt(viewer, 5).at("error"), Value("No."));
    EXPECT_EQ(momentAt(viewer, 6).at("outside"), Value(Dictionary{{"file", "/a"}, {"removed", false}}));
    EXPECT_EQ(momentAt(viewer, 1).at("events"), Value(platform::Array{Dictionary{{"event", "reload"}}}));
    EXPECT_EQ(shown(ask(viewer, R"({"do":"moment","at":1})")), Value(1));
    EXPECT_THAT(ask(viewer, R"({"do":"moment","at":2})").at("error").stringOr(),
                HasSubstr("no state of its own"));
}

TEST_F(RecordingViewerTest, longRecordings_comeInPieces) {
    std::vector<std::string> lines{begun};
    constexpr int commands = 1200;
    for (int number = 1; number <= commands; ++number) lines.push_back(answered(number, number));
    auto viewer = this->viewer(lines);
    std::size_t from = 0;
    std::size_t pieces = 0;
    while (from < viewer.moments().count()) {
        const auto answer = ask(viewer, R"({"do":"moments","from":)" + std::to_string(from) + "}");
        const std::size_t count = required(answer.at("moments").array())->size();
        ASSERT_GT(count, 0U);
        EXPECT_LE(count, RecordingViewer::mostMoments);
        from += count;
        ++pieces;
    }
    EXPECT_EQ(from, lines.size());
    EXPECT_EQ(pieces, 3U);
    EXPECT_EQ(shown(ask(viewer, R"({"do":"moment","at":777})")), Value(777));
}

TEST_F(RecordingViewerTest, whatIsNoLook_isRefusedInOneSentence) {
    auto viewer = this->viewer({begun, answered(10, 1)});
    for (const char* command : {"tap", "set", "find", "files", "device", "wait", "post", "nonsense"}) {
        const Dictionary answer = ask(viewer, R"({"do":")" + std::string(command) + R"(","row":1})");
        EXPECT_EQ(answer.at("ok"), Value(false));
        EXPECT_THAT(answer.at("error").stringOr(), HasSubstr("recording, to which nothing can be done"));
        EXPECT_EQ(shown(answer), Value(1));
    }
    for (const char* line :
         {"", "[]", "{}", R"({"do":1})", R"({"do":"moment"})", R"({"do":"moment","at":-1})",
          R"({"do":"moment","at":2})", R"({"do":"moments","from":2})", "\xff"})
        EXPECT_EQ(ask(viewer, line).at("ok"), Value(false)) << line;
}

TEST_F(RecordingViewerTest, fileThatWasWrittenOver_isSaidAndOtherStatesStay) {
    const std::string path = file({begun, answered(10, 1), answered(20, 2)});
    RecordingViewer viewer(*required(RecordedMoments::read(path, [](std::uint64_t) {})));
    // Replaced it is another file.
    testing_support::writeText(path + ".new", "");
    std::filesystem::rename(path + ".new", path);
    EXPECT_EQ(shown(ask(viewer, R"({"do":"moment","at":1})")), Value(1));

    const std::string other = file({begun, answered(10, 1), answered(20, 2)});
    RecordingViewer touched(*required(RecordedMoments::read(other, [](std::uint64_t) {})));
    std::filesystem::resize_file(other, std::filesystem::file_size(other) - answered(20, 2).size());
    const Dictionary answer = ask(touched, R"({"do":"moment","at":2})");
    EXPECT_THAT(answer.at("error").stringOr(), HasSubstr("has been changed since it was opened"));
}

TEST_F(RecordingViewerTest, whatCannotBeShown_isToldByFileAndLine) {
    const std::string path = directory_ / "story.rec";
    EXPECT_THAT(errorOf(path), HasSubstr("could not be opened: No such file"));
    EXPECT_THAT(errorOf(directory_.path().string()), HasSubstr("is no regular file"));
    EXPECT_THAT(errorOf(file({begun})), HasSubstr("nothing to be seen"));
    EXPECT_EQ(errorOf(file({begun, answered(10, 1), R"({"time":5,"end":true})"})),
              path + ": Line 4: The time goes back.");
}

TEST_F(RecordingViewerTest, images_areFoundByNameAtThePhonesScale) {
    for (const char* name : {"first/nav.png", "first/nav@2x.png", "first/nav@3x.png", "first/one@3x.png",
                             "second/nav@2x.png", "second/System/Speaker@2x.png", "second/text.txt"})
        directory_.write(name, "");
    const RecordingImages images({directory_ / "first", directory_ / "second", directory_ / "missing"}, 2);
    EXPECT_EQ(images.file("nav"), directory_ / "first/nav@2x.png");
    EXPECT_EQ(images.file("one"), directory_ / "first/one@3x.png");
    EXPECT_EQ(images.file("Speaker@2x"), directory_ / "second/System/Speaker@2x.png");
    EXPECT_EQ(images.file("text"), std::nullopt);
    EXPECT_EQ(images.file("../first/nav"), std::nullopt);
    EXPECT_EQ(RecordingImages({directory_ / "first"}, 1).file("nav"), directory_ / "first/nav.png");
}

}  // namespace
