// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "settings/recording/Recording.h"
#include "settings/recording/RecordingReader.h"

namespace {

using settings::parseRecordedStep;
using settings::RecordedStep;
using settings::RecordingReader;
using settings::RecordingStart;
using testing::HasSubstr;

RecordingStart start() {
    return {"1.2.3",
            {"clock=system", "model=A=B"},
            4'294'967'295,
            "2026-11-20T09:00:00.125",
            "Europe/Berlin",
            "Sample.bundle",
            {{"/a", {0, 255}}, {"/var/empty", {}}}};
}

const std::string begun = R"({"time":0,"start":true})";

/// What a reader of these lines says at last: an error, or "" for a recording that can be read.
std::string readingOf(const std::vector<std::string>& lines) {
    std::stringstream stream(lineText(start()) + "\n");
    stream.seekp(0, std::ios::end);
    for (const std::string& line : lines) stream << line << "\n";
    RecordingReader reader(stream);
    EXPECT_TRUE(reader.start());
    for (;;) {
        const auto step = reader.next();
        if (!step) return step.error().localizedDescription;
        if (!*step) return "";
    }
}

std::string errorOf(const std::string& line) {
    const auto step = parseRecordedStep(line);
    return step ? "" : step.error().localizedDescription;
}

TEST(Recording, start_isReadAsItWasWritten) {
    EXPECT_EQ(settings::parseRecordingStart(lineText(start())), start());
    EXPECT_TRUE(lineText(start()).starts_with(R"({"format":"quietrix-recording","version":1,)"));
}

TEST(Recording, everyStep_isReadAsItWasWritten) {
    const settings::MachineAnswers found{
        {settings::Calendars{{"id", "Work", "Me", 0xFF0080}}, {"one", "two"}},
        {settings::Networks{"Home", "Home"}, {}},
        {settings::Connected{true}, {}},
        {settings::Tones{{"texttone:Chord", "Chord"}}, {}},
        {settings::DeviceRefusal{"No."}, {}},
        {settings::DeviceRefusal{}, {}},
    };
    using Step = RecordedStep;
    for (const Step& step :
         {Step{0, Step::Begun(), found, {}}, Step{1, Step::Command{R"({"do":"tap"})"}, {}, R"({"ok":true})"},
          Step{2, Step::Command{"bytes \xff"}, {}, R"({"ok":false})"}, Step{3, Step::Command{"{}"}, {}, {}},
          Step{4, Step::OversizedLine(), {}, R"({"ok":false})"},
          Step{5, Step::WaitOver(), found, R"({"a":[1,"ü",null]})"}, Step{6, Step::TimePassed(), {}, {}},
          Step{7, Step::Notified{"com.velmora.x"}, {}, {}},
          Step{8, Step::FileChanged{"/a", platform::Data{1, 2, 3}}, {}, {}},
          Step{8, Step::FileChanged{"/a", platform::Data{}}, {}, {}},
          Step{9, Step::FileChanged{"/a", {}}, {}, {}}, Step{10, Step::Ended(), {}, {}},
          Step{11, Step::Command{"{}"}, {}, {}, "signal 6 (Aborted)"}, Step{12, Step::Ended(), {}, {}, ""}}) {
        EXPECT_EQ(parseRecordedStep(lineText(step)), step) << lineText(step);
        EXPECT_EQ(lineText(step).find('\n'), std::string::npos);
    }
}

TEST(Recording, otherFormatOrVersion_saysWhatToDo) {
    const auto errorOfStart = [](std::string_view line) {
        const auto read = settings::parseRecordingStart(line);
        return read ? "" : read.error().localizedDescription;
    };
    for (const char* line : {"", "\xff", "{}", "[]", R"({"format":"other","version":1})", R"({"format":1})"})
        EXPECT_THAT(errorOfStart(line), HasSubstr("no recording of a phone: make one with")) << line;
    EXPECT_THAT(errorOfStart(R"({"format":"quietrix-recording","version":2})"),
                HasSubstr("version 2, and this program reads version 1: replay it with"));
    EXPECT_THAT(errorOfStart(R"({"format":"quietrix-recording"})"), HasSubstr("of version"));
}

TEST(Recording, fieldThatIsWrong_isNamed) {
    for (const auto& [line, reason] : {std::pair<const char*, const char*>{R"({"start":true})", "\"time\""},
                                       {R"({"time":true,"start":true})", "\"time\""},
                                       {R"({"time":1e300})", "\"time\""},
                                       {R"({"time":99999999999999})", "\"time\""},
                                       {R"({"time":0,"start":1})", "\"start\""},
                                       {R"({"time":0,"command":1})", "\"command\""},
                                       {R"({"time":0,"commandBytes":"*"})", "\"commandBytes\""},
                                       {R"({"time":0,"answer":1})", "\"answer\""},
                                       {R"({"time":0,"end":true,"answer":{}})", "\"answer\""},
                                       {R"({"time":0,"outside":1})", "\"outside\""},
                                       {R"({"time":0,"outside":{"file":"a","bytes":null}})", "\"file\""},
                                       {R"({"time":0,"outside":{"file":"/a"}})", "\"bytes\""},
                                       {R"({"time":0,"outside":{"file":"/a","bytes":"="}})", "\"bytes\""},
                                       {R"({"time":0,"found":1})", "\"found\""},
                                       {R"({"time":0,"found":[{"rain":1}]})", "\"found\""},
                                       {R"({"time":0,"found":[{"connected":1}]})", "\"connected\""},
                                       {R"({"time":0,"found":[{"calendars":[{}]}]})", "\"calendars\""},
                                       {R"({"time":0,"found":[{"tones":[1]}]})", "\"tones\""},
                                       {R"({"time":0,"found":[{"networks":[1]}]})", "\"networks\""},
                                       {R"({"time":0,"found":[{"networks":[],"log":1}]})", "\"log\""},
                                       {R"({"time":0,"command":"{}","died":1})", "\"died\""},
                                       {R"({"time":0,"command":"{}","answer":{},"died":"x"})", "\"died\""},
                                       {"[]", "no JSON object"}}) {
        EXPECT_THAT(errorOf(line), HasSubstr(reason)) << line;
    }
}

TEST(RecordingReader, linesOutOfOrder_areNamedByTheirNumbers) {
    const std::string asked = R"({"time":1,"command":"{}"})";
    const std::string answer = R"({"time":2,"answer":{}})";
    const std::string end = R"({"time":3,"end":true})";
    EXPECT_EQ(readingOf({begun, asked, R"({"time":1})", answer, end}), "");
    EXPECT_EQ(readingOf({asked}), "Line 2: The phone has not been started.");
    EXPECT_EQ(readingOf({begun, begun}), "Line 3: The phone has been started before.");
    EXPECT_EQ(readingOf({begun, answer}), "Line 3: \"answer\" stands where nothing was asked.");
    EXPECT_EQ(readingOf({begun, asked, asked}), "Line 4: The command before has not been answered.");
    EXPECT_EQ(readingOf({begun, asked, answer, answer}),
              "Line 5: \"answer\" stands where nothing was asked.");
    EXPECT_EQ(readingOf({begun, R"({"time":0,"oversized":true})"}), "Line 3: The answer is missing.");
    EXPECT_EQ(readingOf({begun, end, R"({"time":2})"}), "Line 4: The recording has ended before.");
    EXPECT_EQ(readingOf({begun, R"({"time":2})", R"({"time":1})"}), "Line 4: The time goes back.");
    EXPECT_THAT(readingOf({begun, "", end}), testing::StartsWith("Line 3: "));
}

TEST(RecordingReader, death_isTheEnd) {
    const std::string died = R"-({"time":1,"command":"{}","died":"signal 6 (Aborted)"})-";
    EXPECT_EQ(readingOf({begun, died}), "");
    EXPECT_EQ(readingOf({begun, died, R"({"time":2})"}), "Line 4: The recording has ended before.");
}

TEST(Recording, hang_isReadWithItsTimeWhateverTheText) {
    using std::chrono::seconds;
    EXPECT_EQ(settings::hangOf(settings::noAnswerWithin(seconds(20))), seconds(20));
    EXPECT_EQ(settings::hangOf("signal 6 (Aborted)"), std::nullopt);
    EXPECT_EQ(settings::hangOf("no answer"), seconds(1));
    EXPECT_EQ(settings::hangOf("no answer within 99999999999999999999999 s"), seconds(3600));
}

TEST(RecordingReader, lineThatIsNotEnded_isNotThere) {
    std::stringstream stream(lineText(start()) + "\n" + begun + "\n{\"time\":1,\"end\":true}");
    RecordingReader reader(stream);
    ASSERT_TRUE(reader.start());
    ASSERT_TRUE(reader.next().value());
    EXPECT_FALSE(reader.next().value());
    EXPECT_FALSE(reader.isWhole());
    EXPECT_EQ(reader.line(), 2U);
}

}  // namespace
