// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Method.h"
#include "platform/preferences/PSViewController.h"

namespace quietrix {

/// What a themed screen puts into its bar; see ChromedScreen for when. Main thread.

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

}  // namespace quietrix
