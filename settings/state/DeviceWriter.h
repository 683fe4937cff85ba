// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Value.h"
#include "settings/application/Application.h"

namespace settings {

/// Writes what there is to know of the device beside its screens: "device" of a state. Main thread.
class DeviceWriter {
  public:
    /// The application must outlive this.
    explicit DeviceWriter(const Application& application) : application_(application) {}

    /// What stays as it is unless something happens; a clock that stands still is among it.
    platform::Dictionary lasting() const;
    /// All of it, with a clock that runs too.
    platform::Dictionary now() const;

  private:
    const Application& application_;
};

}  // namespace settings
