// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/uikit/UIViewController.h"

namespace platform {

inline constexpr std::string_view SLServiceTypeTwitter = "SLServiceTypeTwitter";
inline constexpr std::string_view SLServiceTypeSinaWeibo = "SLServiceTypeSinaWeibo";

/// The composer of a post to a social network. Nothing is posted by itself: the user ends it.
class SLComposeViewController : public UIViewController {
    PLATFORM_CLASS(SLComposeViewController, UIViewController)

  public:
    /// Never null here: every service has a composer.
    static std::shared_ptr<SLComposeViewController> composeViewControllerForServiceType(
        std::string_view serviceType);

    const std::string& serviceType() const { return serviceType_; }
    const std::string& initialText() const { return text_; }
    void setInitialText(std::string text) { text_ = std::move(text); }

    /// How the user ends it: dismissed in either case. "sent" hands the text to the service's own share page
    /// through the device's URL opener. Nothing happens once it is not shown any more.
    enum class Outcome { Sent, Cancelled };
    void finish(Outcome outcome);

  private:
    std::string serviceType_;
    std::string text_;
};

}  // namespace platform
