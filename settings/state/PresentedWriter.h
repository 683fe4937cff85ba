// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Value.h"
#include "platform/uikit/UIViewController.h"

namespace settings {

/// The state's "presented": an alert, a sheet, a confirmation, an activity (an alert without buttons, which
/// only the program can close) or a composer; nil for null. Of an attachment that is a text, the beginning
/// comes along to be read. Main thread.
platform::Value presentedValue(const std::shared_ptr<platform::UIViewController>& presented);

}  // namespace settings
