// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace testing_support {

/// A new directory that is removed with all that is in it.
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "quietrix-test-XXXXXX").string();
        if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary directory");
        path_ = pattern;
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }
    /// Writes a file in it, folders on the way included, and gives its path.
    std::string write(const std::string& name, const std::string& text) const;

  private:
    std::filesystem::path path_;
};

inline std::string readText(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeText(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string TemporaryDirectory::write(const std::string& name, const std::string& text) const {
    writeText(path_ / name, text);
    return (path_ / name).string();
}

}  // namespace testing_support
