// SPDX-License-Identifier: MIT
#include "device/ProgramPaths.h"

#include <cstdlib>
#include <string_view>
#include <system_error>

namespace device {

namespace fs = std::filesystem;

ProgramPaths ProgramPaths::ofThisProgram() {
    std::error_code error;
    return ProgramPaths(fs::read_symlink("/proc/self/exe", error).parent_path());
}

std::string ProgramPaths::ownFile() {
    std::error_code error;
    std::string file = fs::read_symlink("/proc/self/exe", error).string();
    constexpr std::string_view gone = " (deleted)";
    if (file.ends_with(gone)) file.resize(file.size() - gone.size());
    return file;
}

std::string ProgramPaths::systemShell() const {
    const fs::path installed =
        (programDirectory_ / QUIETRIX_HELPER_PROGRAMS / "SpringBoard").lexically_normal();
    std::error_code error;
    if (fs::exists(installed, error)) return installed.string();
    return (programDirectory_ / "../libexec/quietrix/SpringBoard").lexically_normal().string();
}

std::optional<std::string> ProgramPaths::find(const char* name) const {
    for (const char* place : {QUIETRIX_PRIVATE_LIBRARIES, QUIETRIX_SHARED_FILES, "../share"}) {
        std::error_code error;
        const fs::path directory = fs::weakly_canonical(programDirectory_ / place / name, error);
        if (!error && fs::is_directory(directory, error)) return directory.string();
    }
    return std::nullopt;
}

namespace {

fs::path variable(const char* name) {
    // Read before any thread starts, and nothing here ever sets a variable.
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
    return {value ? value : ""};
}

}  // namespace

std::optional<std::string> defaultRootDirectory() {
    // A relative data directory is to be ignored, as other programs do.
    if (const fs::path data = variable("XDG_DATA_HOME"); data.is_absolute()) return data / "quietrix/phone";
    if (const fs::path home = variable("HOME"); !home.empty()) return home / ".local/share/quietrix/phone";
    return std::nullopt;
}

std::optional<std::string> runtimeDirectory() {
    const fs::path directory = variable("XDG_RUNTIME_DIR");
    return directory.empty() ? std::nullopt : std::optional(directory.string());
}

}  // namespace device
