// SPDX-License-Identifier: MIT
#include "settings/channels/server/FirstMessage.h"

#include <boost/json.hpp>

namespace settings::server {

std::optional<FirstMessage> parseFirstMessage(std::string_view message) {
    if (message.size() > FirstMessage::longest) return std::nullopt;
    boost::json::parse_options options;
    options.max_depth = 8;
    boost::system::error_code error;
    const auto json = boost::json::parse({message.data(), message.size()}, error, {}, options);
    const auto* object = error ? nullptr : json.if_object();
    if (!object) return std::nullopt;
    using Kind = FirstMessage::Kind;
    for (const auto& [key, kind] : {std::pair{"secret", Kind::Secret}, std::pair{"prove", Kind::Prove}}) {
        const auto* value = object->if_contains(key);
        if (!value) continue;
        const auto* text = value->if_string();
        if (!text) return std::nullopt;
        return FirstMessage{kind, std::string(text->data(), text->size())};
    }
    return std::nullopt;
}

}  // namespace settings::server
