// SPDX-License-Identifier: MIT
#include "settings/recording/FileWatch.h"

#include <algorithm>

namespace settings {

using platform::Data;
using platform::Result;

namespace {

/// Keeping a state changes the file's stamp, since it has one name more then.
class NotingHistory : public platform::FileHistory {
  public:
    NotingHistory(std::unique_ptr<FileHistory> history, std::string path, FileWatch& watch)
        : history_(std::move(history)), path_(std::move(path)), watch_(watch) {}

    Result<std::vector<std::string>> names() const override { return history_->names(); }
    Result<platform::FileStamp> stamp(const std::string& name) const override {
        return history_->stamp(name);
    }
    Result<Data> read(const std::string& name) const override { return history_->read(name); }
    Result<Kept> keep(const std::string& name) override {
        const auto kept = history_->keep(name);
        watch_.noteOwnChange(path_);
        return kept;
    }
    Result<Kept> mark(const std::string& name) override { return history_->mark(name); }
    Result<void> remove(const std::string& name) override {
        const auto removed = history_->remove(name);
        watch_.noteOwnChange(path_);
        return removed;
    }

  private:
    std::unique_ptr<FileHistory> history_;
    std::string path_;
    FileWatch& watch_;
};

class NotingFiles : public platform::FileSystem {
  public:
    NotingFiles(std::shared_ptr<FileSystem> files, FileWatch& watch)
        : files_(std::move(files)), watch_(watch) {}

    Result<Data> read(std::string_view path) const override { return files_->read(path); }
    Result<void> write(std::string_view path, const Data& data, platform::Write how) override {
        return noted(path, files_->write(path, data, how));
    }
    bool exists(std::string_view path) const override { return files_->exists(path); }
    bool isDirectory(std::string_view path) const override { return files_->isDirectory(path); }
    Result<std::optional<platform::FileStamp>> stamp(std::string_view path) const override {
        return files_->stamp(path);
    }
    Result<void> remove(std::string_view path) override { return noted(path, files_->remove(path)); }
    Result<void> createDirectory(std::string_view path) override { return files_->createDirectory(path); }
    Result<std::vector<std::string>> list(std::string_view path) const override { return files_->list(path); }
    Result<std::unique_ptr<platform::FileLock>> lockExclusively(std::string_view path,
                                                                double seconds) override {
        return files_->lockExclusively(path, seconds);
    }
    Result<std::unique_ptr<platform::FileHistory>> openHistory(std::string_view path,
                                                               platform::Missing missing) override {
        auto history = files_->openHistory(path, missing);
        if (!history || !*history) return history;
        return std::make_unique<NotingHistory>(*std::move(history), std::string(path), watch_);
    }
    std::string hostPath(std::string_view path) const override { return files_->hostPath(path); }

  private:
    Result<void> noted(std::string_view path, Result<void> done) {
        watch_.noteOwnChange(path);
        return done;
    }

    std::shared_ptr<FileSystem> files_;
    FileWatch& watch_;
};

}  // namespace

void FileWatch::setPaths(const std::vector<std::string>& paths) {
    std::map<std::string, Stamp> known;
    for (const std::string& path : paths) {
        const auto before = known_.find(path);
        known.emplace(path, before == known_.end() ? stampOf(path) : before->second);
    }
    known_ = std::move(known);
}

void FileWatch::noteOwnChange(std::string_view path) {
    for (auto& [each, known] : known_) {
        if (each == path || each.starts_with(std::string(path) + "/")) known = stampOf(each);
    }
}

std::vector<std::string> FileWatch::takeChanged() {
    std::vector<std::string> changed;
    for (auto& [path, known] : known_) {
        const Stamp now = stampOf(path);
        if (now == known) continue;
        known = now;
        changed.push_back(path);
    }
    return changed;
}

bool FileWatch::hasChanged() const {
    return std::ranges::any_of(known_,
                               [this](const auto& entry) { return stampOf(entry.first) != entry.second; });
}

std::shared_ptr<platform::FileSystem> FileWatch::notingFiles() {
    return std::make_shared<NotingFiles>(files_, *this);
}

FileWatch::Stamp FileWatch::stampOf(const std::string& path) const {
    return files_->stamp(path).value_or(std::nullopt);
}

}  // namespace settings
