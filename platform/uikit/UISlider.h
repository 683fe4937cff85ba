// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIImage.h"

namespace platform {

/// A slider with an image at each end.
class UISlider : public UIControl {
    PLATFORM_CLASS(UISlider, UIControl)

  public:
    using UIControl::UIControl;

    double minimumValue() const { return minimum_; }
    double maximumValue() const { return maximum_; }
    /// A maximum below the minimum becomes the minimum; the value is brought into the range. Not-a-number is
    /// ignored.
    void setRange(double minimum, double maximum);
    double value() const { return value_; }
    /// Brought into the range; not-a-number is ignored.
    void setValue(double value);
    const std::shared_ptr<UIImage>& minimumValueImage() const { return minimumImage_; }
    void setMinimumValueImage(std::shared_ptr<UIImage> image) { minimumImage_ = std::move(image); }
    const std::shared_ptr<UIImage>& maximumValueImage() const { return maximumImage_; }
    void setMaximumValueImage(std::shared_ptr<UIImage> image) { maximumImage_ = std::move(image); }

  private:
    double minimum_ = 0;
    double maximum_ = 1;
    double value_ = 0;
    std::shared_ptr<UIImage> minimumImage_;
    std::shared_ptr<UIImage> maximumImage_;
};

}  // namespace platform
