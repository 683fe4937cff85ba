// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace device {

/// Where the program finds what belongs to it: beside an installed program in "../lib/quietrix" (what holds
/// code) and "../share/quietrix", or where else the build was told to install these, in "../share" of the
/// tree that it was built in. The ways are relative, so that what was installed can be moved. Host paths.
class ProgramPaths {
  public:
    /// Of the running program.
    static ProgramPaths ofThisProgram();
    explicit ProgramPaths(std::filesystem::path programDirectory)
        : programDirectory_(std::move(programDirectory)) {}

    /// The program's own file, as it was started: another one may have taken its place since.
    static std::string ownFile();

    /// The product's bundle; empty when it is not there.
    std::optional<std::string> bundle() const { return find("QuietrixPreferences.bundle"); }
    /// The application's own bundle of texts and images; empty when it is not there.
    std::optional<std::string> resources() const { return find("Settings"); }
    /// The browser page; empty when it was not built.
    std::optional<std::string> page() const { return find("page"); }
    /// The phone's system shell, in "../libexec/quietrix" of either; it need not be there.
    std::string systemShell() const;

  private:
    std::optional<std::string> find(const char* name) const;

    std::filesystem::path programDirectory_;
};

/// Where the phone's files are unless the command line says otherwise: "quietrix/phone" in the user's data
/// directory ($XDG_DATA_HOME, else ~/.local/share); empty when neither variable is set.
std::optional<std::string> defaultRootDirectory();

/// What $XDG_RUNTIME_DIR names, unchecked; empty when it is not set.
std::optional<std::string> runtimeDirectory();

}  // namespace device
