// SPDX-License-Identifier: MIT
#include "settings/channels/server/Responder.h"

#include <algorithm>
#include <cstddef>

#include "settings/channels/server/PageFiles.h"
#include "settings/channels/server/RequestRules.h"
#include "settings/channels/server/Secret.h"

namespace settings::server {

namespace {

constexpr std::size_t maximumImageBytes = std::size_t{8} << 20;
constexpr std::size_t maximumPageFileBytes = std::size_t{32} << 20;
constexpr std::size_t maximumSoundBytes = std::size_t{8} << 20;
constexpr std::string_view firstPage = "index.html";
constexpr std::string_view imageFolder = "image/";
constexpr std::string_view soundFolder = "sounds/";
constexpr std::string_view plainText = "text/plain; charset=utf-8";

constexpr std::string_view contentSecurityPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob:; font-src 'self'; "
    "connect-src 'self'; media-src blob:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

enum class Caching { Never, AskEachTime };

/// Every answer begins here: no answer leaves without the headers that keep other sites away from it.
Response securedResponse(unsigned status, Caching caching) {
    Response response;
    response.status = status;
    response.fields = {
        {"Content-Security-Policy", std::string(contentSecurityPolicy)},
        {"X-Content-Type-Options", "nosniff"},
        {"Referrer-Policy", "no-referrer"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        {"Cache-Control", caching == Caching::Never ? "no-store" : "no-cache"},
    };
    return response;
}

Response textResponse(unsigned status, std::string_view sentence) {
    Response response = securedResponse(status, Caching::Never);
    response.fields.emplace_back("Content-Type", plainText);
    response.body = std::string(sentence) + "\n";
    return response;
}

Response notFound() {
    return textResponse(404, "There is nothing at this address.");
}

std::vector<std::string_view> fieldValues(const Request& request, std::string_view name) {
    std::vector<std::string_view> values;
    for (const auto& [fieldName, value] : request.fields)
        if (isSameFieldName(fieldName, name)) values.push_back(value);
    return values;
}

/// Whether it can stand in a header, as "audio/" and a name.
bool isAudioType(std::string_view mediaType) {
    constexpr std::string_view family = "audio/";
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyz0123456789+-.";
    return mediaType.starts_with(family) && mediaType.size() > family.size() &&
           mediaType.find_first_not_of(allowed, family.size()) == std::string_view::npos;
}

Response fileResponse(const Request& request, std::string content, std::string_view contentType) {
    const std::string entityTag = entityTagOf(content);
    const bool unchanged =
        std::ranges::any_of(fieldValues(request, "If-None-Match"),
                            [&](std::string_view list) { return listsEntityTag(list, entityTag); });
    Response response = securedResponse(unchanged ? 304 : 200, Caching::AskEachTime);
    response.fields.emplace_back("ETag", entityTag);
    if (unchanged) return response;
    response.fields.emplace_back("Content-Type", contentType);
    response.body = std::move(content);
    return response;
}

}  // namespace

Responder::Responder(std::uint16_t port, std::string secret, std::string pageDirectory, ImageFile imageFile)
    : port_(port),
      secret_(std::move(secret)),
      pageDirectory_(std::move(pageDirectory)),
      imageFile_(std::move(imageFile)) {}

Response Responder::refusal(unsigned status, std::string_view sentence) {
    Response response = textResponse(status, sentence);
    response.after = AfterAnswer::Close;
    return response;
}

Answer Responder::answer(const Request& request) const {
    const auto hosts = fieldValues(request, "Host");
    if (hosts.size() != 1 || !isOwnHost(hosts.front(), port_))
        return refusal(421, "This server answers as 127.0.0.1 and localhost only.");
    const auto origins = fieldValues(request, "Origin");
    if (origins.size() > 1 || (!origins.empty() && !isOwnOrigin(origins.front(), hosts.front())))
        return refusal(403, "This server answers its own page only.");
    if (request.method != "GET" && request.method != "HEAD") {
        Response response = refusal(405, "This server answers GET and HEAD only.");
        response.fields.emplace_back("Allow", "GET, HEAD");
        return response;
    }
    const auto target = splitTarget(request.target);
    if (!target) return refusal(400, "The request's target is no path.");

    const auto path = decodePath(target->path);
    if (!path) return notFound();
    if (request.asksForWebSocket) {
        if (*path != "ws") return refusal(404, "There is no WebSocket at this address.");
        if (origins.empty()) return refusal(403, "A WebSocket needs the Origin of this server's page.");
        return AcceptWebSocket{};
    }
    if (*path == "ws") {
        Response response = refusal(426, "This address is for a WebSocket.");
        response.fields.emplace_back("Upgrade", "websocket");
        return response;
    }
    const bool isOfThePhone = path->starts_with(imageFolder) || path->starts_with(soundFolder);
    if (isOfThePhone && !showsSecret(request)) {
        Response response = refusal(401, "Open the address that Quietrix Settings printed when it started.");
        response.fields.emplace_back("WWW-Authenticate", "Bearer");
        return response;
    }
    if (path->starts_with(imageFolder))
        return image(request, std::string_view(*path).substr(imageFolder.size()));
    if (path->starts_with(soundFolder)) return AskForSound{path->substr(soundFolder.size())};
    return page(request, path->empty() ? firstPage : std::string_view(*path));
}

Response Responder::sound(const Request& request, const platform::Result<platform::ToneSound>& sound) {
    if (!sound) return textResponse(404, sound.error().localizedDescription);
    if (sound->bytes.size() > maximumSoundBytes) return textResponse(404, "The sound is larger than 8 MiB.");
    if (!isAudioType(sound->mediaType)) return textResponse(404, "What is called so is no sound.");
    return fileResponse(request, std::string(sound->bytes.begin(), sound->bytes.end()), sound->mediaType);
}

bool Responder::showsSecret(const Request& request) const {
    const auto headers = fieldValues(request, "Authorization");
    const auto token = headers.size() == 1 ? bearerToken(headers.front()) : std::nullopt;
    return token && isSecret(*token, secret_);
}

Response Responder::image(const Request& request, std::string_view name) const {
    const auto file = imageFile_ ? imageFile_(name) : std::nullopt;
    if (!file) return notFound();
    auto content = readRegularFile(*file, maximumImageBytes);
    if (!content || !isPNG(*content)) return notFound();
    return fileResponse(request, std::move(*content), "image/png");
}

Response Responder::page(const Request& request, std::string_view path) const {
    const auto file = pathBeneath(pageDirectory_, path);
    auto content = file ? readRegularFile(*file, maximumPageFileBytes) : std::nullopt;
    if (!content && path == firstPage && !pageDirectory_.empty()) {
        return textResponse(404,
                            "The page's files are gone: the program was moved or removed while it ran. End "
                            "it, and start it anew.");
    }
    if (!content) return notFound();
    return fileResponse(request, std::move(*content), contentTypeOf(path));
}

}  // namespace settings::server
