// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Method.h"
#include "platform/preferences/PSViewController.h"
#include "velmora/VMNavigationBarColors.h"

namespace quietrix {

/// The look that a themed screen wears while it is on top, as steps that every such screen takes at the same
/// points of its life. The saved colours are the screen's own properties, filled with each appearance. Main
/// thread.
using SavedChrome = velmora::SavedBarColors;

using BarAction = platform::Method<void(const std::shared_ptr<platform::Object>&)>;

/// The share/follow button with the bundle's image "twitter", targeting the screen.
std::shared_ptr<platform::UIBarButtonItem> makeShareButton(platform::PSViewController& screen,
                                                           BarAction action);

/// The two ways in which themed screens show their title: the logo fading in, and the screen's title as text.
using TitleView = void (*)(platform::PSViewController& screen);
void fadeInTitleLogo(platform::PSViewController& screen);
void setTitleLabel(platform::PSViewController& screen);

/// viewDidLoad: the share/follow button at the right, the title, before iOS 11 the logo for the back button
/// of the screen pushed above, and the shared year if no screen has computed it yet.
void chromeDidLoad(platform::PSViewController& screen, BarAction twitterAction, TitleView showTitle);

/// viewWillAppear: saves the status-bar style and the bar's colours, then sets the product's.
void chromeWillAppear(const platform::PSViewController& screen, SavedChrome& saved);

/// viewWillDisappear: puts back what was saved.
void chromeWillDisappear(const platform::PSViewController& screen, const SavedChrome& saved);

}  // namespace quietrix
