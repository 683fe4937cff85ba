// SPDX-License-Identifier: MIT
#include "settings/commands/ScreenCommands.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "platform/messageui/MFMailComposeViewController.h"
#include "platform/social/SLComposeViewController.h"
#include "platform/uikit/UIAlertController.h"
#include "settings/application/LinkedScreens.h"
#include "settings/application/TopScreen.h"

namespace settings {

using platform::failure;
using platform::MFMailComposeResult;
using platform::MFMailComposeViewController;
using platform::Result;
using platform::SLComposeViewController;
using platform::UIAlertController;

Outcome<void> pressBarButton(Application& /*application*/, const CommandFields& fields) {
    const Result<std::string> side = fields.text("side");
    if (!side) return std::unexpected(side.error());
    if (*side != "left" && *side != "right") return failure(R"("side" must be "left" or "right".)");
    const Result<std::int64_t> number = fields.index("item");
    if (!number) return std::unexpected(number.error());
    const TopScreen top = TopScreen::now();
    if (!top.screen) return failure("There is no screen.");
    const auto& navigationItem = *top.screen->navigationItem();
    const auto& items =
        *side == "left" ? navigationItem.leftBarButtonItems() : navigationItem.rightBarButtonItems();
    const auto position = static_cast<std::uint64_t>(*number);
    if (position >= items.size()) {
        return failure("There is no button " + std::to_string(*number) + " at the " + *side + " of the bar.");
    }
    // Held while it is pressed: its action may replace the bar's buttons.
    const auto item = items[position];
    if (!item->action() || !item->target()) {
        return failure("Button " + std::to_string(*number) + " at the " + *side +
                       " of the bar does nothing.");
    }
    item->press();
    return {};
}

Outcome<void> goBack(Application& /*application*/, const CommandFields& /*fields*/) {
    const TopScreen top = TopScreen::now();
    if (!top.navigation || !top.navigation->popViewControllerAnimated(true)) {
        return failure("This screen has no back button.");
    }
    return {};
}

Outcome<void> chooseAction(Application& /*application*/, const CommandFields& fields) {
    const Result<std::string> title = fields.text("action");
    if (!title) return std::unexpected(title.error());
    const auto alert = std::dynamic_pointer_cast<UIAlertController>(TopScreen::now().presented);
    if (!alert) return failure("No alert or sheet is presented.");
    const auto& actions = alert->actions();
    const auto action = std::ranges::find(actions, *title, &platform::UIAlertAction::title);
    if (action == actions.end()) return failure("There is no button \"" + *title + "\".");
    alert->choose(static_cast<std::size_t>(action - actions.begin()));
    return {};
}

namespace {

constexpr const char* composerResults = R"("sent", "saved", "cancelled" or "failed")";

/// A post is sent or it is not: the phone keeps no drafts of posts, and nothing can fail ahead of the
/// sending.
Result<void> endPost(SLComposeViewController& composer, const std::string& result) {
    if (result == "sent") {
        composer.finish(SLComposeViewController::Outcome::Sent);
    } else if (result == "cancelled" || result == "saved" || result == "failed") {
        composer.finish(SLComposeViewController::Outcome::Cancelled);
    } else {
        return failure("A post cannot end as \"" + result + "\": it is " + composerResults + ".");
    }
    return {};
}

Result<void> endMail(MFMailComposeViewController& composer, const std::string& result) {
    constexpr std::array results{std::pair{"cancelled", MFMailComposeResult::Cancelled},
                                 std::pair{"saved", MFMailComposeResult::Saved},
                                 std::pair{"sent", MFMailComposeResult::Sent},
                                 std::pair{"failed", MFMailComposeResult::Failed}};
    for (const auto& [name, value] : results) {
        if (result != name) continue;
        if (!composer.finish(value)) return failure("The mail has been ended already.");
        return {};
    }
    return failure("A mail cannot end as \"" + result + "\": it is " + composerResults + ".");
}

}  // namespace

Outcome<void> endComposer(Application& /*application*/, const CommandFields& fields) {
    const Result<std::string> result = fields.text("result");
    if (!result) return std::unexpected(result.error());
    const auto presented = TopScreen::now().presented;
    if (const auto mail = std::dynamic_pointer_cast<MFMailComposeViewController>(presented))
        return endMail(*mail, *result);
    if (const auto post = std::dynamic_pointer_cast<SLComposeViewController>(presented))
        return endPost(*post, *result);
    return failure("No composer is presented.");
}

Outcome<void> openLink(Application& application, const CommandFields& fields) {
    const Result<std::int64_t> number = fields.index("item");
    if (!number) return std::unexpected(number.error());
    const TopScreen top = TopScreen::now();
    const auto links = linkedScreens(application.bundle(), top);
    const auto position = static_cast<std::uint64_t>(*number);
    if (position >= links.size()) return failure("This screen has no link " + std::to_string(*number) + ".");
    openLinkedScreen(*top.navigation, links[position]);
    return {};
}

}  // namespace settings
