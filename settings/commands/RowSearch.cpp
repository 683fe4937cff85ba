// SPDX-License-Identifier: MIT
#include "settings/commands/RowSearch.h"

#include <string>
#include <utility>

#include "platform/foundation/CaseInsensitive.h"
#include "settings/application/RowKeyText.h"
#include "settings/application/TopScreen.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::failure;
using platform::Result;
using platform::Value;

Outcome<Dictionary> findRows(Application& /*application*/, const CommandFields& fields) {
    const Result<std::string> text = fields.text("text");
    if (!text) return std::unexpected(text.error());
    // Every name holds it: whoever asks for that wants the list itself.
    if (text->empty()) return failure("\"text\" must not be empty.");
    const auto list = TopScreen::now().list();
    if (!list) return failure("This screen has no rows.");

    Array found;
    const auto rows = list->specifiers();
    for (std::size_t at = 0; at < rows->size(); ++at) {
        const auto& specifier = (*rows)[at];
        const auto& name = specifier->name();
        if (!name || !platform::containsIgnoringCase(*name, *text)) continue;
        const auto index = static_cast<std::int64_t>(at);
        const auto path = list->indexPathForIndex(index);
        found.emplace_back(Dictionary{{"key", rowKeyText(list->keyAtIndex(index))},
                                      {"index", index},
                                      {"name", *name},
                                      {"row", path ? Value(path->row) : Value()}});
    }
    return Dictionary{{"found", std::move(found)}};
}

}  // namespace settings
