// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/uikit/UIAlertController.h"

namespace platform {

/// The phone's older alert: it shows itself above whatever is shown, without a screen that presents it. Its
/// buttons only close it. Main thread.
class UIAlertView : public Object {
    PLATFORM_CLASS(UIAlertView, Object)

  public:
    UIAlertView() : UIAlertView(std::nullopt, std::nullopt, nullptr, std::nullopt, {}) {}
    /// Selector "initWithTitle:message:delegate:cancelButtonTitle:otherButtonTitles:". No delegate is ever
    /// told anything. Without any button the user can only wait until it is closed by the program.
    UIAlertView(std::optional<std::string> title, std::optional<std::string> message, std::nullptr_t delegate,
                const std::optional<std::string>& cancelButtonTitle,
                const std::vector<std::string>& otherButtonTitles);

    /// Without a window a log line says that nobody sees it. While it is shown, nothing. It stays shown when
    /// this object goes.
    void show();
    /// Takes it away without a press; nothing happens when it is not shown.
    void dismiss() { controller_->dismiss(); }
    bool isVisible() const { return controller_->presentingViewController() != nullptr; }

  private:
    std::shared_ptr<UIAlertController> controller_;
};

}  // namespace platform
