// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "device/DeviceOptions.h"
#include "platform/foundation/DeviceFacts.h"
#include "platform/foundation/FileSystem.h"

namespace device {

/// What the device says of itself: what the options say, and where they leave out the serial number, the UDID
/// or the model, what was made up once for the root and is kept in its file phonePaths::deviceFacts:
/// a binary property list, a dictionary of the texts "serialNumber", "UDID" and "model".
class SettableDeviceFacts : public platform::DeviceFacts {
  public:
    /// Reads the root's file, or makes it. If it can be neither, or holds something else, it is left alone,
    /// the made-up values last as long as this object, and one log line says why.
    SettableDeviceFacts(const DeviceOptions& options, const std::shared_ptr<platform::FileSystem>& files);

    std::string systemVersion() const override { return systemVersion_; }
    std::optional<int> userInterfaceIdiom() const override { return static_cast<int>(idiom_); }
    double screenScale() const override { return scale_; }
    std::vector<std::string> preferredLanguages() const override { return languages_; }
    bool isDarkMode() const override { return darkMode_; }
    void setDarkMode(bool on) override { darkMode_ = on; }
    std::string serialNumber() const override { return serialNumber_; }
    std::string UDID() const override { return UDID_; }
    std::string model() const override { return model_; }

  private:
    std::string systemVersion_;
    Idiom idiom_;
    double scale_;
    std::vector<std::string> languages_;
    bool darkMode_;
    std::string serialNumber_;
    std::string UDID_;
    std::string model_;
};

}  // namespace device
