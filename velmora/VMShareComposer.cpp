// SPDX-License-Identifier: MIT
#include "velmora/VMShareComposer.h"

#include <utility>

#include "platform/social/SLComposeViewController.h"
#include "platform/uikit/UIDevice.h"

namespace velmora {

void presentShareComposer(platform::UIViewController& screen, std::string text) {
    const bool simplifiedChinese = platform::preferredLanguages().front() == "zh-Hans";
    const auto composer = platform::SLComposeViewController::composeViewControllerForServiceType(
        simplifiedChinese ? platform::SLServiceTypeSinaWeibo : platform::SLServiceTypeTwitter);
    composer->setInitialText(std::move(text));
    screen.presentViewController_animated_completion(composer, true, nullptr);
}

}  // namespace velmora
