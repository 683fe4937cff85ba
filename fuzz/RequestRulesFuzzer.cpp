// SPDX-License-Identifier: MIT
// A request's target and headers, and the first message of a socket, as anybody on this machine could send
// them. The first line is the target, the second the Authorization header, the third the Host header, the
// rest an If-None-Match header; the whole is the first message.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "settings/channels/server/FirstMessage.h"
#include "settings/channels/server/RequestRules.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

std::string_view takeLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

/// What comes out of a path must stay below the directory it is put after.
void requireHarmless(const std::string& path) {
    require(path.find('\0') == std::string::npos);
    require(path.find('\\') == std::string::npos);
    const std::string framed = "/" + path + "/";
    if (path.empty()) return;
    for (const std::string_view piece : {"//", "/./", "/../"})
        require(framed.find(piece) == std::string::npos);
}

bool isWithin(std::string_view part, std::string_view whole) {
    return part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size();
}

std::string escaped(std::string_view path) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text = "/";
    for (const char letter : path) {
        const auto byte = static_cast<unsigned char>(letter);
        text += '%';
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    if (const auto message = settings::server::parseFirstMessage(rest)) {
        require(rest.size() <= settings::server::FirstMessage::longest);
        const char* word = message->kind == settings::server::FirstMessage::Kind::Secret ? "secret" : "prove";
        // A letter may be spelled as an escape.
        require(rest.find(word) != std::string_view::npos || rest.find('\\') != std::string_view::npos);
        require(message->text.size() < rest.size());
    }
    const std::string_view line = takeLine(rest);
    if (const auto target = settings::server::splitTarget(line)) {
        require(target->path.starts_with('/') && isWithin(target->path, line));
        require(target->path.size() + target->query.size() <= line.size());
        if (const auto path = settings::server::decodePath(target->path)) {
            requireHarmless(*path);
            require(settings::server::decodePath(escaped(*path)) == path);
        }
    }
    const std::string_view authorization = takeLine(rest);
    if (const auto token = settings::server::bearerToken(authorization)) {
        require(isWithin(*token, authorization) && !token->empty());
        require(token->find_first_of(" \t") == std::string_view::npos);
    }
    const std::string_view host = takeLine(rest);
    if (settings::server::isOwnHost(host, 8123)) {
        require(host == "127.0.0.1:8123" || host == "localhost:8123");
        require(settings::server::isOwnOrigin("http://" + std::string(host), host));
    }
    if (settings::server::listsEntityTag(rest, "\"tag\""))
        require(rest.find("\"tag\"") != std::string_view::npos || rest.find('*') != std::string_view::npos);
    return 0;
}
