// SPDX-License-Identifier: MIT
#include "device/faults/FaultyServices.h"

#include <cerrno>
#include <chrono>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "device/HostFile.h"

namespace device {

namespace {

using platform::Data;
using platform::failure;
using platform::Result;

std::unexpected<platform::Error> cannotBe(std::string_view path, std::string_view done, int error) {
    return failure("The file \"" + std::string(path) + "\" could not be " + std::string(done) + ": " +
                   host::message(error) + ".");
}

void takeTime(const Faults& faults) {
    if (faults.has(Fault::Slow)) std::this_thread::sleep_for(faults.delay());
}

/// Why nothing can be written or made; 0 when it can.
int writeError(const Faults& faults) {
    if (faults.has(Fault::ReadOnly)) return EROFS;
    return faults.has(Fault::DiskFull) ? ENOSPC : 0;
}

class FaultyHistory : public platform::FileHistory {
  public:
    FaultyHistory(std::unique_ptr<FileHistory> history, std::string path,
                  std::shared_ptr<const Faults> faults)
        : history_(std::move(history)), path_(std::move(path)), faults_(std::move(faults)) {}

    Result<std::vector<std::string>> names() const override {
        takeTime(*faults_);
        return history_->names();
    }
    Result<platform::FileStamp> stamp(const std::string& name) const override {
        takeTime(*faults_);
        return history_->stamp(name);
    }
    Result<Data> read(const std::string& name) const override {
        takeTime(*faults_);
        return history_->read(name);
    }
    Result<Kept> keep(const std::string& name) override {
        takeTime(*faults_);
        if (const int error = writeError(*faults_)) return cannotBe(path_, "kept in its history", error);
        return history_->keep(name);
    }
    Result<Kept> mark(const std::string& name) override {
        takeTime(*faults_);
        if (const int error = writeError(*faults_)) return cannotBe(path_, "kept in its history", error);
        return history_->mark(name);
    }
    Result<void> remove(const std::string& name) override {
        takeTime(*faults_);
        if (faults_->has(Fault::ReadOnly)) return cannotBe(name, "removed", EROFS);
        return history_->remove(name);
    }

  private:
    std::unique_ptr<FileHistory> history_;
    std::string path_;
    std::shared_ptr<const Faults> faults_;
};

class FaultyFiles : public platform::FileSystem {
  public:
    FaultyFiles(std::shared_ptr<FileSystem> files, std::shared_ptr<const Faults> faults)
        : files_(std::move(files)), faults_(std::move(faults)) {}

    Result<Data> read(std::string_view path) const override {
        takeTime(*faults_);
        const bool isProfiles = path == faults_->profilesPath();
        if (isProfiles && faults_->has(Fault::ProfilesUnreadable)) return cannotBe(path, "read", EIO);
        Result<Data> data = files_->read(path);
        if (data && isProfiles && faults_->has(Fault::ProfilesCutShort)) data->resize(data->size() / 2);
        return data;
    }
    Result<void> write(std::string_view path, const Data& data, platform::Write how) override {
        takeTime(*faults_);
        if (const int error = writeError(*faults_)) return cannotBe(path, "written", error);
        return files_->write(path, data, how);
    }
    bool exists(std::string_view path) const override {
        takeTime(*faults_);
        return files_->exists(path);
    }
    bool isDirectory(std::string_view path) const override {
        takeTime(*faults_);
        return files_->isDirectory(path);
    }
    /// A file that begins or ceases to be readable, or whole, is another one to whoever remembers its stamp.
    Result<std::optional<platform::FileStamp>> stamp(std::string_view path) const override {
        takeTime(*faults_);
        auto stamp = files_->stamp(path);
        if (!stamp || !*stamp || path != faults_->profilesPath()) return stamp;
        if (faults_->has(Fault::ProfilesUnreadable)) (*stamp)->changedNanoseconds += 1;
        if (faults_->has(Fault::ProfilesCutShort)) (*stamp)->size /= 2;
        return stamp;
    }
    Result<void> remove(std::string_view path) override {
        takeTime(*faults_);
        if (faults_->has(Fault::ReadOnly)) return cannotBe(path, "removed", EROFS);
        return files_->remove(path);
    }
    Result<void> createDirectory(std::string_view path) override {
        takeTime(*faults_);
        if (const int error = writeError(*faults_)) return cannotBe(path, "created", error);
        return files_->createDirectory(path);
    }
    Result<std::vector<std::string>> list(std::string_view path) const override {
        takeTime(*faults_);
        return files_->list(path);
    }
    Result<std::unique_ptr<platform::FileLock>> lockExclusively(std::string_view path,
                                                                double seconds) override {
        takeTime(*faults_);
        if (faults_->has(Fault::ReadOnly)) return cannotBe(path, "locked", EROFS);
        if (!faults_->has(Fault::ProfilesLocked) || path != faults_->profilesPath())
            return files_->lockExclusively(path, seconds);
        // As long as whoever waits is willing to, unless the other one lets go meanwhile.
        using std::chrono::steady_clock;
        const auto deadline = steady_clock::now() + std::chrono::duration<double>(seconds);
        constexpr std::chrono::milliseconds between{10};
        while (faults_->has(Fault::ProfilesLocked)) {
            if (steady_clock::now() >= deadline) {
                return failure("The file \"" + std::string(path) +
                               "\" could not be locked: another process holds it.");
            }
            std::this_thread::sleep_for(between);
        }
        return files_->lockExclusively(path, seconds);
    }
    Result<std::unique_ptr<platform::FileHistory>> openHistory(std::string_view path,
                                                               platform::Missing missing) override {
        takeTime(*faults_);
        // A folder that is there can be opened on a disk that is full.
        auto history = files_->openHistory(path, platform::Missing::Leave);
        if (history && !*history && missing == platform::Missing::Make) {
            if (const int error = writeError(*faults_)) return cannotBe(path, "kept in its history", error);
            history = files_->openHistory(path, missing);
        }
        if (!history || !*history) return history;
        return std::make_unique<FaultyHistory>(*std::move(history), std::string(path), faults_);
    }
    std::string hostPath(std::string_view path) const override { return files_->hostPath(path); }

  private:
    std::shared_ptr<FileSystem> files_;
    std::shared_ptr<const Faults> faults_;
};

class FaultyCalendars : public platform::CalendarSource {
  public:
    FaultyCalendars(std::shared_ptr<CalendarSource> source, std::shared_ptr<const Faults> faults)
        : source_(std::move(source)), faults_(std::move(faults)) {}

    std::vector<platform::CalendarEntry> calendars() override {
        if (faults_->has(Fault::CalendarsSilent)) return {};
        return source_->calendars();
    }

  private:
    std::shared_ptr<CalendarSource> source_;
    std::shared_ptr<const Faults> faults_;
};

class FaultyNetworks : public platform::NetworkSource {
  public:
    FaultyNetworks(std::shared_ptr<NetworkSource> source, std::shared_ptr<const Faults> faults)
        : source_(std::move(source)), faults_(std::move(faults)) {}

    std::vector<std::string> knownSSIDs() override {
        if (faults_->has(Fault::NetworksSilent)) return {};
        return source_->knownSSIDs();
    }
    bool isConnected() override { return !faults_->has(Fault::NetworksSilent) && source_->isConnected(); }

  private:
    std::shared_ptr<NetworkSource> source_;
    std::shared_ptr<const Faults> faults_;
};

class FaultyTones : public platform::ToneSource {
  public:
    FaultyTones(std::shared_ptr<ToneSource> source, std::shared_ptr<const Faults> faults)
        : source_(std::move(source)), faults_(std::move(faults)) {}

    std::vector<platform::ToneEntry> tones() override {
        auto tones = source_->tones();
        // The phone's own is there without any source.
        if (faults_->has(Fault::TonesSilent))
            std::erase_if(tones, [](const auto& tone) { return tone.identifier != builtIn; });
        return tones;
    }
    Result<platform::ToneSound> sound(std::string_view identifier) override {
        if (faults_->has(Fault::TonesSilent) && identifier != builtIn)
            return failure("There is no tone \"" + std::string(identifier) + "\".");
        return source_->sound(identifier);
    }

  private:
    static constexpr std::string_view builtIn = "texttone:Calendar Alert";

    std::shared_ptr<ToneSource> source_;
    std::shared_ptr<const Faults> faults_;
};

class FaultyMail : public platform::MailService {
  public:
    FaultyMail(std::shared_ptr<MailService> mail, std::shared_ptr<const Faults> faults)
        : mail_(std::move(mail)), faults_(std::move(faults)) {}

    bool canSend() const override { return mail_->canSend(); }
    std::string senderAddress() const override { return mail_->senderAddress(); }
    Result<void> send(const platform::MailDraft& draft) override {
        if (faults_->has(Fault::MailFails)) return failure("The mail cannot be sent: no server answers.");
        return mail_->send(draft);
    }
    Result<void> save(const platform::MailDraft& draft) override {
        if (faults_->has(Fault::MailFails)) return failure("The mail cannot be kept: no server answers.");
        return mail_->save(draft);
    }

  private:
    std::shared_ptr<MailService> mail_;
    std::shared_ptr<const Faults> faults_;
};

template <class Faulty, class Service>
void wrap(std::shared_ptr<Service>& service, const std::shared_ptr<Faults>& faults) {
    if (service) service = std::make_shared<Faulty>(std::move(service), faults);
}

}  // namespace

platform::Device withFaults(platform::Device device, const std::shared_ptr<Faults>& faults) {
    wrap<FaultyFiles>(device.files, faults);
    wrap<FaultyCalendars>(device.calendars, faults);
    wrap<FaultyNetworks>(device.networks, faults);
    wrap<FaultyTones>(device.tones, faults);
    wrap<FaultyMail>(device.mail, faults);
    return device;
}

}  // namespace device
