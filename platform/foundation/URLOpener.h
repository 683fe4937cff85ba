// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// Opens addresses outside the phone. Main thread.
class URLOpener {
  public:
    virtual ~URLOpener() = default;

    /// Whether an application for the address's scheme is installed.
    virtual bool canOpenURL(const std::string& url) const = 0;
    /// Hands the address over; false when nothing took it.
    virtual bool openURL(const std::string& url) = 0;
};

}  // namespace platform
