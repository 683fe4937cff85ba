// SPDX-License-Identifier: MIT
#include "platform/social/SLComposeViewController.h"

#include "platform/foundation/Hexadecimal.h"
#include "platform/foundation/LogSink.h"
#include "platform/uikit/UIApplication.h"

namespace platform {

PLATFORM_REGISTER_CLASS(SLComposeViewController)

namespace {

bool isUnreserved(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~';
}

std::string percentEncoded(std::string_view text) {
    std::string encoded;
    for (const char c : text) {
        if (isUnreserved(c)) {
            encoded += c;
            continue;
        }
        encoded += '%';
        appendHexadecimal(encoded, static_cast<unsigned char>(c), capitalHexadecimalDigits);
    }
    return encoded;
}

/// The service's page that takes a text to be shared; "" for a service without one.
std::string sharePage(std::string_view serviceType) {
    if (serviceType == SLServiceTypeTwitter) return "https://twitter.com/intent/tweet?text=";
    if (serviceType == SLServiceTypeSinaWeibo) return "https://service.weibo.com/share/share.php?title=";
    return {};
}

}  // namespace

std::shared_ptr<SLComposeViewController> SLComposeViewController::composeViewControllerForServiceType(
    std::string_view serviceType) {
    auto composer = std::make_shared<SLComposeViewController>();
    composer->serviceType_ = serviceType;
    return composer;
}

void SLComposeViewController::finish(Outcome outcome) {
    const auto self = shared(this);
    if (!dismissItself(true) || outcome != Outcome::Sent) return;
    const std::string page = sharePage(serviceType_);
    if (page.empty()) {
        log("SLComposeViewController: The service \"" + serviceType_ + "\" has no page to share on.");
        return;
    }
    const std::string url = page + percentEncoded(text_);
    if (!UIApplication::sharedApplication().openURL(url)) {
        log("SLComposeViewController: Nothing opened the address " + url + ".");
    }
}

}  // namespace platform
