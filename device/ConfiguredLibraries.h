// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/DynamicLibraries.h"
#include "platform/foundation/FileSystem.h"

namespace device {

enum class StatusBarLibrary { Absent, Present };

/// The phone's optional libraries: the status-bar library as configured, any other when its file is there.
/// Nothing is ever loaded.
class ConfiguredLibraries : public platform::DynamicLibraries {
  public:
    ConfiguredLibraries(StatusBarLibrary statusBar, std::shared_ptr<const platform::FileSystem> files);

    bool canOpen(std::string_view path) const override;

  private:
    StatusBarLibrary statusBar_;
    std::shared_ptr<const platform::FileSystem> files_;
};

}  // namespace device
