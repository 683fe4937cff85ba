// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace settings::server {

// How the text of a request's first line and headers is read. Pure functions over untrusted bytes: any input
// is allowed, none has an effect, any thread may call them.

/// A request target in its two halves, both still percent-encoded.
struct RequestTarget {
    std::string_view path;   ///< begins with "/"
    std::string_view query;  ///< what follows the first "?"; empty when there is none
};

/// The halves of an origin-form target ("/path?query"); nothing for the other forms ("*", "http://…", "").
std::optional<RequestTarget> splitTarget(std::string_view target);

/// The path decoded once, without its leading "/": "/a%20b/c" gives "a b/c", "/" gives "". Nothing for a path
/// that must not reach the file system: an escape that is not two hexadecimal digits, a NUL byte, a
/// backslash, or a segment that is empty, "." or ".." (an escaped "/" separates segments as a plain one
/// does).
std::optional<std::string> decodePath(std::string_view path);

/// The token of an Authorization header of the scheme "Bearer"; nothing for other schemes, and for a header
/// without one.
std::optional<std::string_view> bearerToken(std::string_view header);

/// Whether a Host header names this server on this machine: "127.0.0.1:PORT" or "localhost:PORT", or the bare
/// names when the port is HTTP's own 80. Anything else is a name that someone pointed at this machine.
bool isOwnHost(std::string_view host, std::uint16_t port);

/// Whether an Origin header is the origin of pages from that Host header. "null" is not.
bool isOwnOrigin(std::string_view origin, std::string_view host);

/// Whether an If-None-Match header lists this entity tag (quotes included) or is "*".
bool listsEntityTag(std::string_view header, std::string_view entityTag);

/// Whether two header names are the same, which upper and lower case do not change.
bool isSameFieldName(std::string_view left, std::string_view right);

}  // namespace settings::server
