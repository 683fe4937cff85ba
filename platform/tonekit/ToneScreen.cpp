// SPDX-License-Identifier: MIT
#include "platform/tonekit/ToneScreen.h"

#include <utility>

namespace platform {

void ToneScreen::setTonePickerViewController(std::shared_ptr<TKTonePickerViewController> picker) {
    if (picker_ == picker) return;
    if (picker_) picker_->view()->removeFromSuperview();
    picker_ = std::move(picker);
    if (!picker_) return;
    picker_->view()->setFrame(view()->bounds());
    view()->addSubview(picker_->view());
}

void makeToneScreenClassExist(const std::string& name) {
    if (ClassRegistry::shared().find(name) != nullptr) return;
    // Never destroyed, like every class: the registry keeps looking at it.
    const auto* cls = new Class(name, &PSViewController::staticClass(), [name] {
        return std::shared_ptr<Object>(std::make_shared<ToneScreen>(*ClassRegistry::shared().find(name)));
    });
    ClassRegistry::shared().add(*cls);
}

}  // namespace platform
