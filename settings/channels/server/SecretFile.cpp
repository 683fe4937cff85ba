// SPDX-License-Identifier: MIT
#include "settings/channels/server/SecretFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/foundation/LogSink.h"
#include "settings/channels/server/RuntimeFolder.h"
#include "settings/channels/server/Secret.h"

namespace settings::server {

using platform::Result;

namespace {

class Descriptor {
  public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (descriptor_ >= 0) close(descriptor_);
    }

    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }

  private:
    int descriptor_;
};

std::unexpected<platform::Error> failureOf(const std::string& path, const std::string& reason) {
    return platform::failure("\"" + path + "\" " + reason + ".");
}

std::unexpected<platform::Error> systemFailureOf(const std::string& path, const char* what) {
    return failureOf(path, std::string(what) + ": " + std::strerror(errno));
}

/// The name says the port, so that people can tell the files apart.
std::string fileNameFor(const SecretPlace& place) {
    return std::to_string(place.port) + "-" + RuntimeFolder::digestOfRoot(place.rootDirectory);
}

/// The folder of the secrets, and the file in it.
struct SecretFile {
    RuntimeFolder folder;
    std::string name;
    std::string path;

    Result<std::optional<std::string>> read() const;
    Result<void> write(std::string_view secret) const;
};

Result<SecretFile> secretFile(const SecretPlace& place) {
    auto folder = RuntimeFolder::open(place.runtimeDirectory);
    if (!folder) return std::unexpected(folder.error());
    std::string name = fileNameFor(place);
    std::string filePath = folder->path() + "/" + name;
    return SecretFile{std::move(*folder), std::move(name), std::move(filePath)};
}

Result<std::optional<std::string>> SecretFile::read() const {
    // Without O_NONBLOCK a pipe in the file's place would be waited for.
    const Descriptor file(
        openat(folder.descriptor(), name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    if (!file && errno == ENOENT) return std::nullopt;
    if (!file) return systemFailureOf(path, "cannot be opened");
    if (const std::string strange = RuntimeFolder::strangenessOf(file.get()); !strange.empty())
        return failureOf(path, strange);
    std::array<char, 128> bytes{};
    const ssize_t count = ::read(file.get(), bytes.data(), bytes.size());
    if (count < 0) return systemFailureOf(path, "cannot be read");
    std::string secret(bytes.data(), static_cast<std::size_t>(count));
    if (!isSecretText(secret)) return failureOf(path, "holds no secret");
    return secret;
}

Result<void> SecretFile::write(std::string_view secret) const {
    const std::string temporary = "." + name + "." + std::to_string(getpid());
    unlinkat(folder.descriptor(), temporary.c_str(), 0);
    {
        const Descriptor file(openat(folder.descriptor(), temporary.c_str(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                     S_IRUSR | S_IWUSR));
        if (!file) return systemFailureOf(path, "cannot be made");
        if (::write(file.get(), secret.data(), secret.size()) != static_cast<ssize_t>(secret.size())) {
            auto failed = systemFailureOf(path, "cannot be written");
            unlinkat(folder.descriptor(), temporary.c_str(), 0);
            return failed;
        }
    }
    if (renameat(folder.descriptor(), temporary.c_str(), folder.descriptor(), name.c_str()) == 0) return {};
    auto failed = systemFailureOf(path, "cannot be replaced");
    unlinkat(folder.descriptor(), temporary.c_str(), 0);
    return failed;
}

}  // namespace

Result<std::string> keptSecret(const SecretPlace& place, OldSecret old) {
    if (place.runtimeDirectory.empty()) return makeSecret();
    const auto file = secretFile(place);
    if (file && old == OldSecret::TakeOver) {
        auto kept = file->read();
        if (kept && *kept) return **kept;
        if (!kept) platform::log("The kept secret is not used: " + kept.error().localizedDescription);
    }
    auto secret = makeSecret();
    if (!secret) return secret;
    const Result<void> written = file ? file->write(*secret) : std::unexpected(file.error());
    if (!written)
        platform::log("The secret is not kept for the next start: " + written.error().localizedDescription);
    return secret;
}

}  // namespace settings::server
