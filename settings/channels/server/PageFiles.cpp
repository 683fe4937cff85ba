// SPDX-License-Identifier: MIT
#include "settings/channels/server/PageFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <utility>

namespace settings::server {

namespace {

class OpenFile {
  public:
    // Without O_NONBLOCK the opening of a pipe nobody writes to would stop the server's thread.
    explicit OpenFile(const std::string& path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
    ~OpenFile() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

constexpr std::array<std::pair<std::string_view, std::string_view>, 10> contentTypes{{
    {".html", "text/html; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".woff2", "font/woff2"},
    {".svg", "image/svg+xml"},
    {".png", "image/png"},
    {".json", "application/json"},
    {".map", "application/json"},
    {".txt", "text/plain; charset=utf-8"},
    {".ico", "image/x-icon"},
}};

}  // namespace

std::optional<std::string> readRegularFile(const std::string& hostPath, std::size_t maximumBytes) {
    if (hostPath.find('\0') != std::string::npos) return std::nullopt;
    const OpenFile file(hostPath);
    struct stat facts{};
    if (file.descriptor() < 0 || fstat(file.descriptor(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return std::nullopt;
    if (static_cast<std::uintmax_t>(facts.st_size) > maximumBytes) return std::nullopt;

    // One byte more than announced, so that a file that grows meanwhile is noticed and not cut short.
    std::string content(static_cast<std::size_t>(facts.st_size) + 1, '\0');
    std::size_t filled = 0;
    while (filled < content.size()) {
        const ssize_t count = read(file.descriptor(), content.data() + filled, content.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    if (filled == content.size()) return std::nullopt;
    content.resize(filled);
    return content;
}

std::optional<std::string> pathBeneath(const std::string& directory, std::string_view relativePath) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path root = fs::canonical(directory, error);
    if (error) return std::nullopt;
    const fs::path file = fs::canonical(root / fs::path(relativePath), error);
    if (error) return std::nullopt;
    const std::string prefix = root == root.root_path() ? root.string() : root.string() + "/";
    if (!file.string().starts_with(prefix)) return std::nullopt;
    return file.string();
}

std::string_view contentTypeOf(std::string_view fileName) {
    for (const auto& [extension, type] : contentTypes)
        if (fileName.ends_with(extension)) return type;
    return "application/octet-stream";
}

std::string entityTagOf(std::string_view content) {
    // FNV-1a: only has to differ between two builds of a file, not to withstand anybody.
    std::uint64_t hash = 14695981039346656037u;
    for (const char byte : content) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 1099511628211u;
    }
    return "\"" + std::to_string(content.size()) + "-" + std::to_string(hash) + "\"";
}

bool isPNG(std::string_view content) {
    using namespace std::string_view_literals;
    return content.starts_with("\x89PNG\r\n\x1a\n"sv);
}

}  // namespace settings::server
