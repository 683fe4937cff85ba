// SPDX-License-Identifier: MIT
#include "settings/channels/server/Secret.h"

#include <glib.h>
#include <sys/random.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>

#include "platform/foundation/Hexadecimal.h"

namespace settings::server {

namespace {

constexpr std::size_t secretBytes = 32;

}  // namespace

platform::Result<std::string> makeSecret() {
    std::array<unsigned char, secretBytes> bytes{};
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = getrandom(bytes.data() + filled, bytes.size() - filled, 0);
        if (count < 0) {
            if (errno == EINTR) continue;
            return platform::failure(std::string("No random secret could be made: ") + std::strerror(errno) +
                                     ".");
        }
        filled += static_cast<std::size_t>(count);
    }
    std::string secret;
    secret.reserve(bytes.size() * 2);
    for (const unsigned char byte : bytes) platform::appendHexadecimal(secret, byte);
    return secret;
}

bool isSecretText(std::string_view text) {
    return text.size() == secretBytes * 2 &&
           text.find_first_not_of(platform::hexadecimalDigits) == std::string_view::npos;
}

bool isSecret(std::string_view candidate, std::string_view secret) {
    if (candidate.size() != secret.size()) return false;
    // Volatile, so that the compiler cannot turn the loop into a comparison that stops at the first
    // difference.
    volatile unsigned char difference = 0;
    for (std::size_t index = 0; index < secret.size(); ++index)
        difference = static_cast<unsigned char>(difference | (static_cast<unsigned char>(candidate[index]) ^
                                                              static_cast<unsigned char>(secret[index])));
    return difference == 0 && !secret.empty();
}

std::string proofOf(std::string_view secret, std::string_view nonce) {
    const auto* key = reinterpret_cast<const guchar*>(secret.data());
    const auto* message = reinterpret_cast<const guchar*>(nonce.data());
    const std::unique_ptr<char, decltype(&g_free)> proof(
        g_compute_hmac_for_data(G_CHECKSUM_SHA256, key, secret.size(), message, nonce.size()), g_free);
    return proof.get();
}

}  // namespace settings::server
