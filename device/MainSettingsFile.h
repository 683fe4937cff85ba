// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "device/HostFile.h"
#include "device/RootFileSystem.h"

namespace device {

/// The product's main settings file, as far as a phone has it before the product runs.
class MainSettingsFile {
  public:
    /// The root is a host path.
    explicit MainSettingsFile(const std::string& rootDirectory) : files_(rootDirectory) {}

    /// A fresh one, with the product switched off. The directory must be there.
    platform::Result<void> makeFresh();
    /// One that is empty or no property list is put aside, beside where it is, under its name with
    /// ".damaged-" and the day behind it (and a number, when there is one already), and a fresh one takes its
    /// place: the screens would leave it alone for ever. One that is missing, or cannot be read, is left so.
    /// Nothing is locked unless it is damaged. What became of it is one log line, once the main run loop goes
    /// on.
    void mend();

  private:
    bool isDamaged() const;
    host::Explained<std::string> putAside();

    RootFileSystem files_;
};

}  // namespace device
