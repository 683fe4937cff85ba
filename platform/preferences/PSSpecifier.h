// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Method.h"
#include "platform/foundation/Value.h"

namespace platform {

/// What kind of row a specifier is.
enum class PSCellType : std::int64_t {
    Group = 0,
    Link = 1,
    LinkList = 2,
    ListItem = 3,
    TitleValue = 4,
    Slider = 5,
    Switch = 6,
    StaticText = 7,
    EditText = 8,
    Segment = 9,
    Button = 13
};

/// Names a row over time, through rebuilds of its list. Never 0 for a row that is there.
using RowKey = std::uint64_t;

/// One row of a screen: its name and kind, how its value is read and written, what it opens, and a dictionary
/// of properties. The target is held weakly. Properties hold strings, numbers, images (UIImage) and class
/// names; the framework itself sets "label" to the name.
class PSSpecifier : public Object {
    PLATFORM_CLASS(PSSpecifier, Object)

  public:
    using Setter = Method<void(const Value&, const std::shared_ptr<PSSpecifier>&)>;
    using Getter = Method<Value(const std::shared_ptr<PSSpecifier>&)>;
    using Action = Method<void(const std::shared_ptr<PSSpecifier>&)>;

    PSSpecifier();

    /// `detail` is the class name of the screen that the row opens, "" for none. A null target with a setter
    /// or getter makes a row whose value can be neither read nor written.
    static std::shared_ptr<PSSpecifier> preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        std::string_view name, const std::shared_ptr<Object>& target, Setter set, Getter get,
        std::string_view detail, PSCellType cell, std::string_view edit);
    static std::shared_ptr<PSSpecifier> groupSpecifierWithName(std::string_view name);
    /// A group without a name.
    static std::shared_ptr<PSSpecifier> emptyGroupSpecifier();

    /// Tells this specifier from every other one of the process, as long as it lives.
    std::uint64_t key() const { return key_; }

    const std::optional<std::string>& name() const { return name_; }
    /// Sets the property "label" too.
    void setName(std::optional<std::string> name);
    const std::optional<std::string>& identifier() const { return identifier_; }
    void setIdentifier(std::optional<std::string> identifier) { identifier_ = std::move(identifier); }
    PSCellType cellType() const { return cellType_; }
    void setCellType(PSCellType type) { cellType_ = type; }
    std::shared_ptr<Object> target() const { return target_.lock(); }
    void setTarget(const std::shared_ptr<Object>& target) { target_ = target; }
    const Setter& setter() const { return setter_; }
    void setSetter(Setter setter) { setter_ = std::move(setter); }
    const Getter& getter() const { return getter_; }
    const Action& buttonAction() const { return buttonAction_; }
    void setButtonAction(Action action) { buttonAction_ = std::move(action); }
    const std::string& detailControllerClass() const { return detail_; }
    const std::string& editPaneClass() const { return edit_; }
    const Value& userInfo() const { return userInfo_; }
    void setUserInfo(Value userInfo) { userInfo_ = std::move(userInfo); }

    const Dictionary& properties() const { return properties_; }
    /// Nil for a property that is not set.
    Value propertyForKey(std::string_view key) const;
    /// A nil value removes the property.
    void setProperty_forKey(Value value, std::string_view key);

    bool isGroup() const { return cellType_ == PSCellType::Group; }
    /// What the getter gives; the property "default" when that is nil. Nil without a getter or a target.
    Value performGetter();
    /// Hands the value to the setter; false when there is no setter or no target any more.
    bool performSetterWithValue(const Value& value);
    /// Sends the button's action to the target; false when there is none.
    bool performButtonAction();

    /// The key by which its list's readers know it; 0 as long as nobody has asked the list for one.
    RowKey rowKey() const { return rowKey_; }
    void setRowKey(RowKey key) { rowKey_ = key; }

  protected:
    /// What the factories of this class and of its subclasses set.
    void fill(std::string_view name, const std::shared_ptr<Object>& target, Setter set, Getter get,
              std::string_view detail, PSCellType cell, std::string_view edit);

  private:
    std::shared_ptr<PSSpecifier> self() { return shared(this); }

    std::uint64_t key_;
    RowKey rowKey_ = 0;
    std::optional<std::string> name_;
    std::optional<std::string> identifier_;
    PSCellType cellType_ = PSCellType::StaticText;
    std::weak_ptr<Object> target_;
    Setter setter_;
    Getter getter_;
    Action buttonAction_;
    std::string detail_;
    std::string edit_;
    Value userInfo_;
    Dictionary properties_;
};

/// A screen's ordered rows. One list is shared by all who hold it: the screen that caches it changes it in
/// place.
using SpecifierList = std::vector<std::shared_ptr<PSSpecifier>>;
using SpecifierArray = std::shared_ptr<SpecifierList>;

}  // namespace platform
