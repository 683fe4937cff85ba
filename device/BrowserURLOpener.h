// SPDX-License-Identifier: MIT
#pragma once

#include "device/DesktopProgram.h"
#include "platform/foundation/URLOpener.h"

namespace device {

enum class TwitterApplication { Absent, Installed };

/// Opens addresses in the desktop's browser: through xdg-open where that and a display are there, else, or
/// when that finds no browser, by printing the address on standard error for the user to follow. Each opening
/// is written to the journal
/// ("open"). Never waits for the browser.
class BrowserURLOpener : public platform::URLOpener {
  public:
    explicit BrowserURLOpener(TwitterApplication twitter, Desktop desktop = Desktop::IsAsked)
        : twitter_(twitter), desktop_(desktop) {}

    /// http and https always, twitter when its application is installed. An address with blanks or control
    /// characters is none.
    bool canOpenURL(const std::string& url) const override;
    bool openURL(const std::string& url) override;

  private:
    TwitterApplication twitter_;
    Desktop desktop_;
};

}  // namespace device
