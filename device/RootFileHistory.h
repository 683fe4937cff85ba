// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "device/OwnFolder.h"
#include "platform/foundation/FileHistory.h"

namespace device {

/// The states that are kept of a file of a root: hard links in the folder ".NAME.history" beside it.
/// Everything goes by the descriptor of the folder, which was looked at once, so that nobody can put another
/// folder in its place meanwhile. Whoever may read the file may read them.
class RootFileHistory : public platform::FileHistory {
  public:
    /// `path` is the phone's, for the sentences, `file` the host's. Null for a folder that is missing and was
    /// to be left so.
    static platform::Result<std::unique_ptr<platform::FileHistory>> open(std::string_view path,
                                                                         const std::string& file,
                                                                         platform::Missing missing);
    /// Whether a folder of that name is such a one.
    static bool isFolderName(std::string_view name);

    platform::Result<std::vector<std::string>> names() const override;
    platform::Result<platform::FileStamp> stamp(const std::string& name) const override;
    platform::Result<platform::Data> read(const std::string& name) const override;
    platform::Result<Kept> keep(const std::string& name) override;
    platform::Result<Kept> mark(const std::string& name) override;
    platform::Result<void> remove(const std::string& name) override;

  private:
    RootFileHistory(std::string_view path, std::string file, OwnFolder folder)
        : path_(path), file_(std::move(file)), folder_(std::move(folder)) {}

    void followRightsOf(const std::string& name);
    std::unexpected<platform::Error> failedToKeep(int errorNumber) const;
    std::unexpected<platform::Error> failed(const std::string& name, const char* action,
                                            int errorNumber) const;

    std::string path_;
    std::string file_;
    OwnFolder folder_;
};

}  // namespace device
