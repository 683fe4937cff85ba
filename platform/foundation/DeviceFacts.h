// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace platform {

/// What the device says of itself. Read on the main thread.
class DeviceFacts {
  public:
    virtual ~DeviceFacts() = default;

    /// A dotted version, "11.4".
    virtual std::string systemVersion() const = 0;
    /// 0 phone, 1 pad; empty on a device that does not answer the question.
    virtual std::optional<int> userInterfaceIdiom() const = 0;
    /// Pixels for each point of the main screen.
    virtual double screenScale() const = 0;
    /// Language tags, the preferred one first; never empty.
    virtual std::vector<std::string> preferredLanguages() const = 0;
    virtual bool isDarkMode() const = 0;
    virtual void setDarkMode(bool on) = 0;
    virtual std::string serialNumber() const = 0;
    virtual std::string UDID() const = 0;
    virtual std::string model() const = 0;
};

}  // namespace platform
