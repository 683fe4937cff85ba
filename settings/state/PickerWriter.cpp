// SPDX-License-Identifier: MIT
#include "settings/state/PickerWriter.h"

#include <utility>

#include "platform/foundation/Device.h"
#include "settings/application/Pickers.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::UIViewController;
using platform::Value;

namespace {

/// The nearest class of the phone's own that the screen stands on.
const platform::Class& systemClassOf(const UIViewController& screen) {
    const platform::Class* cls = &screen.getClass();
    while (cls->superclass() != nullptr && !platform::ClassRegistry::shared().bundlePath(*cls).empty())
        cls = cls->superclass();
    return *cls;
}

}  // namespace

Value timePickerValue(const std::shared_ptr<UIViewController>& screen) {
    const auto picker = timePickerOf(screen);
    if (!picker) return nullptr;
    Array rows;
    for (std::int64_t row = 0; row < picker->rows->numberOfRowsInSection(0); ++row) {
        const auto cell = picker->rows->cellForRowAtIndexPath({0, row});
        rows.emplace_back(cell ? cell->textLabel()->text().value_or("") : "");
    }
    const auto selected = picker->rows->indexPathForSelectedRow();
    const auto time = picker->wheel->date();
    return Dictionary{{"rows", std::move(rows)},
                      {"selected", selected ? selected->row : std::int64_t{-1}},
                      {"tag", picker->wheel->tag()},
                      {"time", time ? Value(timeOfDayFormatter().stringFromDate(*time)) : Value()}};
}

Value tonePickerValue(const std::shared_ptr<UIViewController>& screen) {
    const auto picker = tonePickerOf(screen);
    if (!picker) return nullptr;
    Array list;
    if (const auto& source = platform::Device::current().tones) {
        for (const auto& tone : source->tones())
            list.emplace_back(Dictionary{{"identifier", tone.identifier}, {"name", tone.name}});
    }
    const auto& selected = picker->selectedToneIdentifier();
    return Dictionary{{"superclass", systemClassOf(*screen).name()},
                      {"selected", selected ? Value(*selected) : Value()},
                      {"default", picker->defaultToneIdentifier()},
                      {"noneAtTop", picker->noneAtTop()},
                      {"vibrations", picker->showsVibrations()},
                      {"storeButton", picker->showsStoreButtonInNavigationBar()},
                      {"list", std::move(list)}};
}

}  // namespace settings
