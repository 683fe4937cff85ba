// SPDX-License-Identifier: MIT
#include "profile/hours/QXDateRangeCell.h"

#include <optional>
#include <utility>

#include "profile/cells/EditableTimeColor.h"
#include "shell/base/Localization.h"
#include "shell/chrome/EditedProfile.h"

namespace quietrix {

using platform::PSSpecifier;
using platform::Rect;
using platform::UIColor;
using platform::UILabel;

PLATFORM_REGISTER_CELL_CLASS(QXDateRangeCell)

namespace {

constexpr std::int64_t fromTag = 21;
constexpr std::int64_t fromTimeTag = 22;
constexpr std::int64_t toTag = 23;
constexpr std::int64_t toTimeTag = 24;
constexpr Rect fromFrame{16, 10, 150, 20};
constexpr Rect fromTimeFrame{0, 10, 100, 20};
constexpr Rect toFrame{16, 34, 150, 20};
constexpr Rect toTimeFrame{0, 34, 100, 20};
/// How far left of the cell's right edge the times begin, in points.
constexpr double timesFromRight = 135;

std::shared_ptr<UILabel> makeLabel(std::int64_t tag, Rect frame, std::optional<std::string> text,
                                   std::shared_ptr<UIColor> color, std::int64_t alignment) {
    auto label = std::make_shared<UILabel>(frame);
    label->setTag(tag);
    label->setText(std::move(text));
    label->setTextColor(std::move(color));
    label->setTextAlignment(alignment);
    label->setNumberOfLines(1);
    return label;
}

std::optional<std::string> storedTime(const std::shared_ptr<PSSpecifier>& row, std::string_view key) {
    const auto profile = profileOfRow(row);
    if (!profile) return std::nullopt;
    return profile->valueForKey(key).stringOr();
}

}  // namespace

QXDateRangeCell::QXDateRangeCell(std::int64_t style, std::string reuseIdentifier,
                                 std::shared_ptr<PSSpecifier> specifier)
    : PSTableCell(style, std::move(reuseIdentifier), std::move(specifier)) {
    const auto& row = PSTableCell::specifier();
    const auto add = [&](std::int64_t tag, Rect frame, std::optional<std::string> text,
                         std::shared_ptr<UIColor> color, std::int64_t alignment) {
        contentView()->addSubview(makeLabel(tag, frame, std::move(text), std::move(color), alignment));
    };
    add(fromTag, fromFrame, localized("From"), UIColor::blackColor(), platform::NSTextAlignmentLeft);
    add(fromTimeTag, fromTimeFrame, storedTime(row, "startTime"), editableTimeColor(),
        platform::NSTextAlignmentRight);
    add(toTag, toFrame, localized("To"), UIColor::blackColor(), platform::NSTextAlignmentLeft);
    add(toTimeTag, toTimeFrame, storedTime(row, "endTime"), editableTimeColor(),
        platform::NSTextAlignmentRight);
}

QXDateRangeCell::QXDateRangeCell(std::shared_ptr<PSSpecifier> specifier)
    : QXDateRangeCell(platform::UITableViewCellStyleDefault, {}, std::move(specifier)) {}

void QXDateRangeCell::layoutSubviews() {
    textLabel()->setText(std::nullopt);
    PSTableCell::layoutSubviews();
    for (const std::int64_t tag : {fromTimeTag, toTimeTag}) {
        const auto label = contentView()->viewWithTag(tag);
        Rect frame = label->frame();
        frame.x = bounds().width - timesFromRight;
        label->setFrame(frame);
    }
}

}  // namespace quietrix
