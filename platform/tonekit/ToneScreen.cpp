// SPDX-License-Identifier: MIT
#include "platform/tonekit/ToneScreen.h"

#include <map>
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

namespace {

/// Never destroyed, like every class: the registry keeps looking at them.
std::map<std::string, const Class*>& madeClasses() {
    static auto& classes = *new std::map<std::string, const Class*>;
    return classes;
}

}  // namespace

void makeToneScreenClassExist(const std::string& name) {
    if (ClassRegistry::shared().find(name) != nullptr) return;
    const Class*& cls = madeClasses()[name];
    if (cls == nullptr) {
        cls = new Class(name, &PSViewController::staticClass(), [name] {
            return std::shared_ptr<Object>(std::make_shared<ToneScreen>(*ClassRegistry::shared().find(name)));
        });
    }
    ClassRegistry::shared().add(*cls);
}

void forgetToneScreenClasses() {
    for (const auto& [name, cls] : madeClasses()) {
        if (ClassRegistry::shared().find(name) == cls) ClassRegistry::shared().remove(name);
    }
}

}  // namespace platform
