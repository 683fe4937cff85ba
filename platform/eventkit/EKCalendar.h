// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/foundation/KeyValueCoding.h"
#include "platform/foundation/Object.h"
#include "platform/uikit/UIColor.h"

namespace platform {

/// One of the user's calendars, as it was when the store was asked. Never changes once made.
class EKCalendar : public Object, public KeyValueCoding {
    PLATFORM_CLASS(EKCalendar, Object)

  public:
    EKCalendar(std::string title, std::string identifier, std::string sourceTitle,
               std::shared_ptr<UIColor> colour);

    const std::string& title() const { return title_; }
    /// Stable across restarts and independent of the title.
    const std::string& calendarIdentifier() const { return identifier_; }
    /// The name of the account that the calendar belongs to.
    const std::string& sourceTitle() const { return sourceTitle_; }
    /// Never null.
    const std::shared_ptr<UIColor>& CGColor() const { return colour_; }

    /// The properties under their names, and the identifier under "identifier" too, as of every record.
    Value valueForKey(std::string_view key) const override;
    /// Every key is read-only.
    void setValue_forKey(const Value& value, std::string_view key) override;

  private:
    std::string title_;
    std::string identifier_;
    std::string sourceTitle_;
    std::shared_ptr<UIColor> colour_;
};

}  // namespace platform
