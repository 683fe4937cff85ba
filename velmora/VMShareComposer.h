// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/uikit/UIViewController.h"

namespace velmora {

/// Presents the composer of a social post with the text, from the screen: Weibo when the first preferred
/// language is exactly "zh-Hans", otherwise Twitter. Nobody looks at what becomes of it. Main thread.
void presentShareComposer(platform::UIViewController& screen, std::string text);

}  // namespace velmora
