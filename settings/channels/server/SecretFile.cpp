// SPDX-License-Identifier: MIT
#include "settings/channels/server/SecretFile.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/foundation/LogSink.h"
#include "settings/channels/server/Secret.h"

namespace settings::server {

using platform::Result;

namespace {

constexpr const char* folderName = "quietrix-settings";
constexpr mode_t accessOfOthers = S_IRWXG | S_IRWXO;

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

/// What is wrong with a file or directory that nobody else may enter, read or write; empty when it is so.
std::string strangenessOf(int descriptor) {
    struct stat facts{};
    if (fstat(descriptor, &facts) != 0) return std::string("cannot be looked at: ") + std::strerror(errno);
    if (facts.st_uid != geteuid()) return "belongs to another user";
    if ((facts.st_mode & accessOfOthers) != 0) return "is open to other users";
    return {};
}

Result<Descriptor> openOwnDirectory(int parent, const std::string& name, const std::string& path, int flags) {
    Descriptor directory(openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
    if (!directory) return systemFailureOf(path, "cannot be opened");
    if (const std::string strange = strangenessOf(directory.get()); !strange.empty())
        return failureOf(path, strange);
    return directory;
}

/// The name says the port, so that people can tell the files apart; the path of a root may be longer than a
/// name.
std::string fileNameFor(const SecretPlace& place) {
    std::error_code error;
    const auto canonical = std::filesystem::canonical(place.rootDirectory, error);
    const std::string root = error ? place.rootDirectory : canonical.string();
    const std::unique_ptr<char, decltype(&g_free)> digest(
        g_compute_checksum_for_string(G_CHECKSUM_SHA256, root.data(), static_cast<gssize>(root.size())),
        g_free);
    return std::to_string(place.port) + "-" + digest.get();
}

/// The folder of the secrets, and the file in it.
struct SecretFile {
    Descriptor folder;
    std::string name;
    std::string path;

    Result<std::optional<std::string>> read() const;
    Result<void> write(std::string_view secret) const;
};

Result<SecretFile> secretFile(const SecretPlace& place) {
    const std::string& runtime = place.runtimeDirectory;
    if (!runtime.starts_with('/')) return failureOf(runtime, "is no absolute path");
    auto parent = openOwnDirectory(AT_FDCWD, runtime, runtime, 0);
    if (!parent) return std::unexpected(parent.error());
    const std::string path = runtime + "/" + folderName;
    if (mkdirat(parent->get(), folderName, S_IRWXU) != 0 && errno != EEXIST)
        return systemFailureOf(path, "cannot be made");
    auto folder = openOwnDirectory(parent->get(), folderName, path, O_NOFOLLOW);
    if (!folder) return std::unexpected(folder.error());
    std::string name = fileNameFor(place);
    std::string filePath = path + "/" + name;
    return SecretFile{std::move(*folder), std::move(name), std::move(filePath)};
}

Result<std::optional<std::string>> SecretFile::read() const {
    // Without O_NONBLOCK a pipe in the file's place would be waited for.
    const Descriptor file(
        openat(folder.get(), name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    if (!file && errno == ENOENT) return std::nullopt;
    if (!file) return systemFailureOf(path, "cannot be opened");
    if (const std::string strange = strangenessOf(file.get()); !strange.empty())
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
    unlinkat(folder.get(), temporary.c_str(), 0);
    {
        const Descriptor file(openat(folder.get(), temporary.c_str(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                     S_IRUSR | S_IWUSR));
        if (!file) return systemFailureOf(path, "cannot be made");
        if (::write(file.get(), secret.data(), secret.size()) != static_cast<ssize_t>(secret.size())) {
            auto failed = systemFailureOf(path, "cannot be written");
            unlinkat(folder.get(), temporary.c_str(), 0);
            return failed;
        }
    }
    if (renameat(folder.get(), temporary.c_str(), folder.get(), name.c_str()) == 0) return {};
    auto failed = systemFailureOf(path, "cannot be replaced");
    unlinkat(folder.get(), temporary.c_str(), 0);
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
