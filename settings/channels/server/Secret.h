// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/Error.h"

namespace settings::server {

/// 256 bits from the kernel's random source as 64 lower-case hexadecimal digits. Fails with the system's
/// reason when the kernel has none to give.
platform::Result<std::string> makeSecret();

/// Whether the text has the form of what makeSecret() gives.
bool isSecretText(std::string_view text);

/// Whether `candidate` is `secret`. Takes the same time wherever the two differ, so that a secret cannot be
/// guessed digit by digit; only a wrong length answers sooner, and the length is no secret.
bool isSecret(std::string_view candidate, std::string_view secret);

/// What shows that somebody knows the secret, and does not tell it: HMAC-SHA-256 of the nonce under the
/// secret, each as its bytes of text, as 64 lower-case hexadecimal digits.
std::string proofOf(std::string_view secret, std::string_view nonce);

}  // namespace settings::server
