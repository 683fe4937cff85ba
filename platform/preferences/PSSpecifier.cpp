// SPDX-License-Identifier: MIT
#include "platform/preferences/PSSpecifier.h"

#include <atomic>
#include <utility>

#include "platform/uikit/CallNote.h"

namespace platform {

PLATFORM_REGISTER_CLASS(PSSpecifier)

namespace {

std::uint64_t nextKey() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

}  // namespace

PSSpecifier::PSSpecifier() : key_(nextKey()) {}

std::shared_ptr<PSSpecifier> PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
    std::string_view name, const std::shared_ptr<Object>& target, Setter set, Getter get,
    std::string_view detail, PSCellType cell, std::string_view edit) {
    auto specifier = std::make_shared<PSSpecifier>();
    specifier->fill(name, target, std::move(set), std::move(get), detail, cell, edit);
    return specifier;
}

void PSSpecifier::fill(std::string_view name, const std::shared_ptr<Object>& target, Setter set, Getter get,
                       std::string_view detail, PSCellType cell, std::string_view edit) {
    setName(std::string(name));
    target_ = target;
    setter_ = std::move(set);
    getter_ = std::move(get);
    detail_ = detail;
    cellType_ = cell;
    edit_ = edit;
}

std::shared_ptr<PSSpecifier> PSSpecifier::groupSpecifierWithName(std::string_view name) {
    auto specifier = emptyGroupSpecifier();
    specifier->setName(std::string(name));
    return specifier;
}

std::shared_ptr<PSSpecifier> PSSpecifier::emptyGroupSpecifier() {
    auto specifier = std::make_shared<PSSpecifier>();
    specifier->setCellType(PSCellType::Group);
    return specifier;
}

void PSSpecifier::setName(std::optional<std::string> name) {
    name_ = std::move(name);
    setProperty_forKey(name_ ? Value(*name_) : Value(), "label");
}

Value PSSpecifier::propertyForKey(std::string_view key) const {
    const auto property = properties_.find(key);
    return property == properties_.end() ? Value() : property->second;
}

void PSSpecifier::setProperty_forKey(Value value, std::string_view key) {
    if (value.isNil()) {
        const auto property = properties_.find(key);
        if (property != properties_.end()) properties_.erase(property);
        return;
    }
    properties_.insert_or_assign(std::string(key), std::move(value));
}

// The methods are copied before they are called: what they call may give the row others, or let it go.

Value PSSpecifier::performGetter() {
    const auto receiver = target_.lock();
    const Getter getter = getter_;
    if (!getter || !receiver) return {};
    const auto row = self();
    const CallNote note(CallNote::Told::WithAnEffect, *receiver, getter.selector(), rowKey_);
    Value value = getter(*receiver, row);
    return value.isNil() ? propertyForKey("default") : value;
}

bool PSSpecifier::performSetterWithValue(const Value& value) {
    const auto receiver = target_.lock();
    const Setter setter = setter_;
    if (!setter || !receiver) return false;
    const CallNote note(CallNote::Told::Always, *receiver, setter.selector(), rowKey_);
    setter(*receiver, value, self());
    return true;
}

bool PSSpecifier::performButtonAction() {
    const auto receiver = target_.lock();
    const Action action = buttonAction_;
    if (!action || !receiver) return false;
    const CallNote note(CallNote::Told::Always, *receiver, action.selector(), rowKey_);
    action(*receiver, self());
    return true;
}

}  // namespace platform
