// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "platform/foundation/Calendar.h"
#include "platform/uikit/UIControl.h"

namespace platform {

inline constexpr std::int64_t UIDatePickerModeTime = 0;
inline constexpr std::int64_t UIDatePickerModeDate = 1;
inline constexpr std::int64_t UIDatePickerModeDateAndTime = 2;

/// Wheels on which the user chooses a date or a time of day. Begins at the present.
class UIDatePicker : public UIControl {
    PLATFORM_CLASS(UIDatePicker, UIControl)

  public:
    using UIControl::UIControl;

    std::int64_t datePickerMode() const { return mode_; }
    void setDatePickerMode(std::int64_t mode) { mode_ = mode; }
    /// Empty when an empty date was set and the user has not chosen one since.
    std::optional<Date> date() const { return date_; }
    /// Tells nobody: only the user's own moves are sent.
    void setDate_animated(std::optional<Date> date, bool animated);
    /// What the user's turn of the wheels to that instant does: takes it and sends "value changed". False,
    /// and nothing happens, while the picker is disabled.
    bool userChoseDate(Date date);

  private:
    std::int64_t mode_ = UIDatePickerModeDateAndTime;
    std::optional<Date> date_ = dateNow();
};

}  // namespace platform
