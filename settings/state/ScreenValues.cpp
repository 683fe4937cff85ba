// SPDX-License-Identifier: MIT
#include "settings/state/ScreenValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "platform/foundation/Hexadecimal.h"
#include "platform/foundation/KeyValueCoding.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::UIColor;
using platform::UIImage;
using platform::Value;

namespace {

void appendComponent(std::string& text, double component) {
    const double bounded = component > 0 ? std::min(component, 1.0) : 0.0;
    platform::appendHexadecimal(text, static_cast<unsigned char>(std::lround(bounded * 255)));
}

}  // namespace

Value ScreenValues::colour(const std::shared_ptr<UIColor>& colour) const {
    if (!colour) return nullptr;
    if (colour->patternImage()) {
        return Dictionary{{"pattern", image(colour->patternImage())}, {"alpha", colour->alpha()}};
    }
    std::string text = "#";
    for (const double component : {colour->red(), colour->green(), colour->blue(), colour->alpha()}) {
        appendComponent(text, component);
    }
    return text;
}

Value ScreenValues::image(const std::shared_ptr<UIImage>& image) const {
    return image ? Value(images_.remember(*image)) : Value();
}

Value ScreenValues::frame(platform::Rect frame) {
    return Array{frame.x, frame.y, frame.width, frame.height};
}

Value ScreenValues::property(const Value& property) const {
    switch (property.type()) {
        case Value::Type::Object:
            if (const auto picture = property.objectAs<UIImage>()) {
                if (picture->fillColor()) return Dictionary{{"swatch", colour(picture->fillColor())}};
                return image(picture);
            }
            if (const auto swatch = property.objectAs<UIColor>())
                return Dictionary{{"swatch", colour(swatch)}};
            return Dictionary{{"class", property.object()->getClass().name()}};
        case Value::Type::Array: {
            Array array;
            for (const Value& entry : *property.array()) array.push_back(this->property(entry));
            return array;
        }
        case Value::Type::Dictionary: {
            Dictionary dictionary;
            for (const auto& [key, entry] : *property.dictionary())
                dictionary.emplace(key, this->property(entry));
            return dictionary;
        }
        default:
            return property;
    }
}

Value ScreenValues::userInfo(const Value& userInfo) {
    if (const auto object = userInfo.object()) {
        const auto* properties = dynamic_cast<const platform::KeyValueCoding*>(object.get());
        return Dictionary{{"class", object->getClass().name()},
                          {"identifier", properties ? properties->valueForKey("identifier") : Value()}};
    }
    if (const Dictionary* dictionary = userInfo.dictionary()) {
        Array keys;
        for (const auto& [key, entry] : *dictionary) keys.emplace_back(key);
        return Dictionary{{"keys", keys}};
    }
    return nullptr;
}

Value ScreenValues::specifier(const std::shared_ptr<platform::PSSpecifier>& specifier) {
    if (!specifier) return nullptr;
    return Dictionary{{"name", text(specifier->name())},
                      {"identifier", text(specifier->identifier())},
                      {"userInfo", userInfo(specifier->userInfo())}};
}

Value ScreenValues::barItem(const platform::UIBarButtonItem& item) const {
    return Dictionary{{"title", text(item.title())},
                      {"image", image(item.image())},
                      {"system", item.systemItem() ? Value(*item.systemItem()) : Value()},
                      {"style", item.style()},
                      {"action", textUnlessEmpty(item.action().selector())}};
}

Value ScreenValues::text(const std::optional<std::string>& text) {
    return text ? Value(*text) : Value();
}

Value ScreenValues::textUnlessEmpty(const std::string& text) {
    return text.empty() ? Value() : Value(text);
}

}  // namespace settings
