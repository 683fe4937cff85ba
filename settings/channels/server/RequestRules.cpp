// SPDX-License-Identifier: MIT
#include "settings/channels/server/RequestRules.h"

#include <algorithm>
#include <cstddef>

namespace settings::server {

namespace {

std::optional<unsigned> hexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
    if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a' + 10);
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
    return std::nullopt;
}

std::optional<std::string> percentDecode(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '%') {
            decoded += text[index];
            continue;
        }
        if (text.size() - index < 3) return std::nullopt;
        const auto high = hexDigit(text[index + 1]);
        const auto low = hexDigit(text[index + 2]);
        if (!high || !low) return std::nullopt;
        decoded += static_cast<char>(*high * 16 + *low);
        index += 2;
    }
    return decoded;
}

/// Cuts the text up to the next separator off `rest`, separator included; all of it when there is none.
std::string_view takePiece(std::string_view& rest, char separator) {
    const std::size_t end = std::min(rest.find(separator), rest.size());
    const std::string_view piece = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return piece;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

std::optional<RequestTarget> splitTarget(std::string_view target) {
    if (!target.starts_with('/')) return std::nullopt;
    const std::size_t mark = target.find('?');
    if (mark == std::string_view::npos) return RequestTarget{target, {}};
    return RequestTarget{target.substr(0, mark), target.substr(mark + 1)};
}

std::optional<std::string> decodePath(std::string_view path) {
    if (!path.starts_with('/')) return std::nullopt;
    auto decoded = percentDecode(path.substr(1));
    if (!decoded || decoded->empty()) return decoded;
    if (decoded->find('\0') != std::string::npos || decoded->find('\\') != std::string::npos)
        return std::nullopt;
    std::size_t start = 0;
    while (start <= decoded->size()) {
        const std::size_t end = std::min(decoded->find('/', start), decoded->size());
        const auto segment = std::string_view(*decoded).substr(start, end - start);
        if (segment.empty() || segment == "." || segment == "..") return std::nullopt;
        start = end + 1;
    }
    return decoded;
}

std::optional<std::string_view> bearerToken(std::string_view header) {
    std::string_view rest = trimmed(header);
    if (!isSameFieldName(takePiece(rest, ' '), "Bearer")) return std::nullopt;
    const std::string_view token = trimmed(rest);
    if (token.empty() || token.find_first_of(" \t") != std::string_view::npos) return std::nullopt;
    return token;
}

bool isOwnHost(std::string_view host, std::uint16_t port) {
    for (const std::string_view name : {"127.0.0.1", "localhost"}) {
        if (!host.starts_with(name)) continue;
        const std::string_view rest = host.substr(name.size());
        if (rest == ":" + std::to_string(port) || (rest.empty() && port == 80)) return true;
    }
    return false;
}

bool isOwnOrigin(std::string_view origin, std::string_view host) {
    constexpr std::string_view scheme = "http://";
    return origin.starts_with(scheme) && origin.substr(scheme.size()) == host;
}

bool listsEntityTag(std::string_view header, std::string_view entityTag) {
    if (trimmed(header) == "*") return true;
    while (!header.empty()) {
        std::string_view listed = trimmed(takePiece(header, ','));
        if (listed.starts_with("W/")) listed.remove_prefix(2);
        if (listed == entityTag) return true;
    }
    return false;
}

bool isSameFieldName(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, lowerCase, lowerCase);
}

}  // namespace settings::server
