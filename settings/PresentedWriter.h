// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Value.h"
#include "platform/uikit/UIViewController.h"

namespace settings {

/// The state's "presented": an alert, a sheet, a confirmation or a composer; nil for null. Main thread.
platform::Value presentedValue(const std::shared_ptr<platform::UIViewController>& presented);

}  // namespace settings
