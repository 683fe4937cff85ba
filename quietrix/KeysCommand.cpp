// SPDX-License-Identifier: MIT
#include "quietrix/Commands.h"
#include "quietrix/JSONText.h"
#include "quietrix/KeyForm.h"
#include "quietrix/ProfileText.h"
#include "quietrix/Table.h"

namespace console {

namespace {

Outcome keys(Session& session) {
    boost::json::array array;
    std::vector<std::vector<std::string>> rows{{"KEY", "TYPE", "DEFAULT", "RANGE", "MEANING"}};
    for (const quietrix::QXProfileKey& key : quietrix::profileKeys()) {
        const KeyForm* form = keyForm(key.name);
        if (!form) continue;
        const std::string type(typeOf(form->kind));
        const std::string range(rangeOf(form->kind));
        const std::string meaning(form->meaning);
        const std::string name(key.name);
        const platform::Value value = key.defaultAsValue();
        rows.push_back({name, type, valueInWords(key.name, value), range, meaning});
        array.push_back(boost::json::object{{"key", name},
                                            {"type", type},
                                            {"default", jsonOf(value)},
                                            {"range", range},
                                            {"meaning", meaning}});
    }
    return Answer{.text = table(rows,
                                [&](std::size_t line, std::size_t, const std::string& text) {
                                    return line == 0 ? session.output().coloured(Output::Colour::Dim, text)
                                                     : text;
                                }),
                  .json = std::move(array)};
}

}  // namespace

void addKeys(Commands& commands) {
    commands.add("keys", "Tells every key of a profile: type, default, range, meaning").run(keys);
}

}  // namespace console
