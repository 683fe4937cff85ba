// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <set>
#include <thread>

#include "device/faults/Faults.h"
#include "device/faults/FaultyServices.h"
#include "tests/doubles/Fakes.h"
#include "tests/doubles/MemoryFileSystem.h"

namespace {

using device::Fault;
using device::Faults;
using platform::Data;
using platform::Write;

constexpr const char* profiles = "/profiles";

class FaultyFilesTest : public testing::Test {
  protected:
    FaultyFilesTest() {
        faults->setProfilesPath(profiles);
        platform::Device plain;
        plain.files = memory;
        files = device::withFaults(plain, faults).files;
        static_cast<void>(memory->write(profiles, Data{1, 2, 3, 4}, Write::Atomically));
        static_cast<void>(memory->write("/other", Data{5, 6}, Write::Atomically));
    }

    /// The error of an outcome; "" for a success.
    template <class T>
    static std::string errorOf(const platform::Result<T>& result) {
        return result ? "" : result.error().localizedDescription;
    }

    std::shared_ptr<doubles::MemoryFileSystem> memory = std::make_shared<doubles::MemoryFileSystem>();
    std::shared_ptr<Faults> faults = std::make_shared<Faults>();
    std::shared_ptr<platform::FileSystem> files;
};

TEST(Faults, names_areReadBackAndEachHasItsOwn) {
    std::set<Fault> faults;
    for (const auto name : Faults::names()) {
        const auto fault = Faults::named(name);
        ASSERT_TRUE(fault) << name;
        EXPECT_EQ(Faults::nameOf(*fault), name);
        faults.insert(*fault);
    }
    EXPECT_EQ(faults.size(), 10U);
    EXPECT_FALSE(Faults::named("none"));
}

TEST(Faults, areActiveUntilTheyEndOrAllAreCleared) {
    Faults faults;
    faults.begin(Fault::Slow);
    faults.begin(Fault::DiskFull);
    faults.begin(Fault::DiskFull);
    EXPECT_EQ(faults.active(), (std::vector<Fault>{Fault::DiskFull, Fault::Slow}));
    faults.end(Fault::DiskFull);
    EXPECT_EQ(faults.active(), std::vector<Fault>{Fault::Slow});
    faults.clear();
    EXPECT_TRUE(faults.active().empty());
}

TEST_F(FaultyFilesTest, withoutAFault_everythingIsAsBeneath) {
    EXPECT_EQ(files->read(profiles).value_or(Data{}), (Data{1, 2, 3, 4}));
    EXPECT_EQ(errorOf(files->write(profiles, Data{9}, Write::Atomically)), "");
    EXPECT_EQ(memory->read(profiles).value_or(Data{}), Data{9});
    EXPECT_EQ(errorOf(files->lockExclusively(profiles, 0)), "");
    EXPECT_EQ(errorOf(files->remove(profiles)), "");
    EXPECT_FALSE(files->exists(profiles));
}

TEST_F(FaultyFilesTest, profilesUnreadable_isAboutThatFileOnlyAndAnotherStampToo) {
    const auto before = files->stamp(profiles);
    faults->begin(Fault::ProfilesUnreadable);
    EXPECT_EQ(errorOf(files->read(profiles)),
              "The file \"/profiles\" could not be read: Input/output error.");
    EXPECT_EQ(errorOf(files->read("/other")), "");
    const auto now = files->stamp(profiles);
    ASSERT_TRUE(before && *before && now && *now);
    EXPECT_NE(**before, **now) << "who remembers the file looks again";
    faults->clear();
    EXPECT_EQ(files->stamp(profiles).value(), *before);
}

TEST_F(FaultyFilesTest, profilesCutShort_givesTheFirstHalfAndLeavesTheFile) {
    faults->begin(Fault::ProfilesCutShort);
    EXPECT_EQ(files->read(profiles).value_or(Data{}), (Data{1, 2}));
    EXPECT_EQ(files->read("/other").value_or(Data{}), (Data{5, 6}));
    EXPECT_EQ(memory->read(profiles).value_or(Data{}), (Data{1, 2, 3, 4}));
}

TEST_F(FaultyFilesTest, profilesLocked_isWaitedForAndThenAnError) {
    faults->begin(Fault::ProfilesLocked);
    EXPECT_EQ(errorOf(files->lockExclusively(profiles, 0.02)),
              "The file \"/profiles\" could not be locked: another process holds it.");
    EXPECT_EQ(errorOf(files->lockExclusively("/other", 0)), "");
    std::thread letsGo([this] { faults->end(Fault::ProfilesLocked); });
    EXPECT_EQ(errorOf(files->lockExclusively(profiles, 60)), "") << "the other one let go meanwhile";
    letsGo.join();
}

TEST_F(FaultyFilesTest, diskFull_keepsWhatIsThere) {
    faults->begin(Fault::DiskFull);
    EXPECT_EQ(errorOf(files->write(profiles, Data{9}, Write::InPlace)),
              "The file \"/profiles\" could not be written: No space left on device.");
    EXPECT_EQ(errorOf(files->createDirectory("/new")),
              "The file \"/new\" could not be created: No space left on device.");
    EXPECT_EQ(memory->read(profiles).value_or(Data{}), (Data{1, 2, 3, 4}));
    EXPECT_EQ(errorOf(files->remove(profiles)), "");
}

TEST_F(FaultyFilesTest, readOnly_refusesEveryChangeAndReads) {
    faults->begin(Fault::ReadOnly);
    for (const std::string& error :
         {errorOf(files->write(profiles, Data{9}, Write::Atomically)), errorOf(files->remove(profiles)),
          errorOf(files->createDirectory("/new")), errorOf(files->lockExclusively(profiles, 0))}) {
        EXPECT_TRUE(error.ends_with(": Read-only file system.")) << error;
    }
    EXPECT_EQ(files->read(profiles).value_or(Data{}), (Data{1, 2, 3, 4}));
}

TEST_F(FaultyFilesTest, slow_takesAtLeastSoLongForEachOperation) {
    faults->setDelay(std::chrono::milliseconds(20));
    faults->begin(Fault::Slow);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(files->exists(profiles));
    EXPECT_TRUE(files->read(profiles));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(40));
}

TEST(FaultyServices, silentSources_giveNothingButThePhonesOwnTone) {
    platform::Device plain;
    const auto calendars = std::make_shared<doubles::FakeCalendarSource>();
    calendars->entries = {{"1", "Home", "Local", 0}};
    const auto networks = std::make_shared<doubles::FakeNetworkSource>();
    networks->ssids = {"cafe"};
    const auto tones = std::make_shared<doubles::FakeToneSource>();
    tones->entries = {{"texttone:Calendar Alert", "Calendar Alert"}, {"texttone:Chord", "Chord"}};
    plain.calendars = calendars;
    plain.networks = networks;
    plain.tones = tones;
    const auto faults = std::make_shared<Faults>();
    const platform::Device device = device::withFaults(plain, faults);
    EXPECT_EQ(device.calendars->calendars().size(), 1U);
    EXPECT_EQ(device.networks->knownSSIDs().size(), 1U);
    EXPECT_EQ(device.tones->tones().size(), 2U);
    for (const Fault fault : {Fault::CalendarsSilent, Fault::NetworksSilent, Fault::TonesSilent})
        faults->begin(fault);
    EXPECT_TRUE(device.calendars->calendars().empty());
    EXPECT_TRUE(device.networks->knownSSIDs().empty());
    EXPECT_FALSE(device.networks->isConnected());
    EXPECT_EQ(device.tones->tones(), std::vector<platform::ToneEntry>{tones->entries.front()});
    EXPECT_FALSE(device.tones->sound("texttone:Chord"));
}

TEST(FaultyServices, mailThatFails_isNeitherSentNorKept) {
    platform::Device plain;
    const auto mail = std::make_shared<doubles::FakeMailService>();
    mail->account = "me@example.org";
    plain.mail = mail;
    const auto faults = std::make_shared<Faults>();
    faults->begin(Fault::MailFails);
    const platform::Device device = device::withFaults(plain, faults);
    EXPECT_TRUE(device.mail->canSend());
    EXPECT_EQ(device.mail->senderAddress(), "me@example.org");
    EXPECT_FALSE(device.mail->send({}));
    EXPECT_FALSE(device.mail->save({}));
    EXPECT_TRUE(mail->sent.empty() && mail->saved.empty());
    faults->clear();
    EXPECT_TRUE(device.mail->send({}));
}

TEST(FaultyServices, aDeviceWithoutAService_staysWithoutIt) {
    const platform::Device device = device::withFaults({}, std::make_shared<Faults>());
    EXPECT_FALSE(device.files || device.calendars || device.networks || device.tones || device.mail);
}

TEST_F(FaultyFilesTest, history_hasTheFaultsOfTheDiskToo) {
    const auto open = [&](platform::Missing missing) { return files->openHistory(profiles, missing); };
    faults->begin(Fault::DiskFull);
    EXPECT_EQ(errorOf(open(platform::Missing::Make)),
              "The file \"/profiles\" could not be kept in its history: No space left on device.");
    EXPECT_EQ(errorOf(open(platform::Missing::Leave)), "");
    faults->clear();
    const auto opened = open(platform::Missing::Make);
    ASSERT_TRUE(opened && *opened);
    platform::FileHistory& history = **opened;
    EXPECT_EQ(errorOf(history.keep("1")), "");
    faults->begin(Fault::DiskFull);
    EXPECT_EQ(errorOf(open(platform::Missing::Make)), "");
    EXPECT_NE(errorOf(history.keep("2")), "");
    EXPECT_NE(errorOf(history.mark("2")), "");
    EXPECT_EQ(errorOf(history.remove("1")), "");
    faults->clear();
    EXPECT_EQ(errorOf(history.keep("1")), "");
    faults->begin(Fault::ReadOnly);
    EXPECT_NE(errorOf(history.keep("2")), "");
    EXPECT_NE(errorOf(history.remove("1")), "");
    EXPECT_EQ(history.names().value_or(std::vector<std::string>{}), std::vector<std::string>{"1"});
    EXPECT_EQ(history.read("1").value_or(Data{}), (Data{1, 2, 3, 4}));
    EXPECT_EQ(errorOf(history.stamp("1")), "");
}

}  // namespace
