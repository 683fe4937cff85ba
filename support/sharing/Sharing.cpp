// SPDX-License-Identifier: MIT
#include "support/sharing/Sharing.h"

#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "shell/base/Localization.h"
#include "velmora/VMShareComposer.h"

namespace quietrix {

using platform::PSViewController;
using platform::UIAlertController;
using platform::UIApplication;

namespace {

constexpr const char* twitterAppProbe = "twitter://";
constexpr const char* followInTwitterApp = "twitter://user?screen_name=velmora";
constexpr const char* followOnTheWeb = "https://twitter.com/velmora";

void followVelmora() {
    auto& application = UIApplication::sharedApplication();
    application.openURL(application.canOpenURL(twitterAppProbe) ? followInTwitterApp : followOnTheWeb);
}

}  // namespace

void showShareSheet(PSViewController& screen,
                    platform::Method<void(const std::shared_ptr<platform::Object>&)> shareAction) {
    const auto sheet = std::make_shared<UIAlertController>(std::nullopt, std::nullopt,
                                                           platform::UIAlertControllerStyleActionSheet);
    const std::weak_ptr<PSViewController> weakScreen = screen.weak(&screen);
    const std::weak_ptr<UIAlertController> weakSheet = sheet;
    const auto dismissSheet = [weakSheet] {
        if (const auto shown = weakSheet.lock())
            shown->dismissViewControllerAnimated_completion(true, nullptr);
    };
    sheet->addAction({localizedInMainBundle("Share \U0001F618"), platform::UIAlertActionStyleDefault,
                      [weakScreen, dismissSheet, shareAction = std::move(shareAction)] {
                          if (const auto self = weakScreen.lock()) shareAction(*self, nullptr);
                          dismissSheet();
                      }});
    sheet->addAction(
        {localizedInMainBundle("Follow @velmora"), platform::UIAlertActionStyleDefault, [dismissSheet] {
             followVelmora();
             dismissSheet();
         }});
    sheet->addAction({localizedInMainBundle("Cancel"), platform::UIAlertActionStyleCancel, dismissSheet});
    screen.presentViewController_animated_completion(sheet, true, nullptr);
}

void presentShareComposer(PSViewController& screen) {
    velmora::presentShareComposer(screen, std::string(shareSentence));
}

}  // namespace quietrix
