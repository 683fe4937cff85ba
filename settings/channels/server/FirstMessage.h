// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace settings::server {

/// What a WebSocket's client says before it is let in: `{"secret": TEXT}`, or before that once
/// `{"prove": NONCE}`, which asks the server to show that it knows the secret itself.
struct FirstMessage {
    enum class Kind { Secret, Prove };
    Kind kind = Kind::Secret;
    std::string text;

    /// No first message is longer, in bytes.
    static constexpr std::size_t longest = 4096;
};

/// Reads a first message from untrusted bytes; nothing when they are none. Further fields are passed over,
/// and a message that holds a secret is one, whatever else it asks for. Any thread.
std::optional<FirstMessage> parseFirstMessage(std::string_view message);

}  // namespace settings::server
