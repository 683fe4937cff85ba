// SPDX-License-Identifier: MIT
#include "platform/foundation/FileManager.h"

#include "platform/foundation/Device.h"
#include "platform/foundation/Journal.h"

namespace platform {

namespace {

std::shared_ptr<FileSystem> fileSystem() {
    return Device::current().files;
}

std::unexpected<Error> noFileSystem(std::string_view path, std::string_view action) {
    return failure("The file \"" + std::string(path) + "\" could not be " + std::string(action) +
                   ": the device has no file system.");
}

}  // namespace

FileManager& FileManager::defaultManager() {
    static FileManager manager;
    return manager;
}

Result<Data> FileManager::contentsAtPath(std::string_view path) const {
    const auto files = fileSystem();
    if (!files) return noFileSystem(path, "read");
    return files->read(path);
}

Result<void> FileManager::writeData_toFile(const Data& data, std::string_view path, Write how) {
    Journal::Course course("write", {{"path", path}});
    const auto files = fileSystem();
    Result<void> result = files ? files->write(path, data, how) : noFileSystem(path, "written");
    course.setOk(result.has_value());
    return result;
}

bool FileManager::fileExistsAtPath(std::string_view path) const {
    const auto files = fileSystem();
    return files && files->exists(path);
}

bool FileManager::directoryExistsAtPath(std::string_view path) const {
    const auto files = fileSystem();
    return files && files->isDirectory(path);
}

Result<std::optional<FileStamp>> FileManager::stampAtPath(std::string_view path) const {
    const auto files = fileSystem();
    if (!files) return noFileSystem(path, "looked at");
    return files->stamp(path);
}

Result<void> FileManager::removeItemAtPath(std::string_view path) {
    Journal::Course course("removeFile", {{"path", path}});
    const auto files = fileSystem();
    Result<void> result = files ? files->remove(path) : noFileSystem(path, "removed");
    course.setOk(result.has_value());
    return result;
}

Result<void> FileManager::createDirectoryAtPath(std::string_view path) {
    const auto files = fileSystem();
    if (!files) return noFileSystem(path, "created");
    return files->createDirectory(path);
}

Result<std::vector<std::string>> FileManager::contentsOfDirectoryAtPath(std::string_view path) const {
    const auto files = fileSystem();
    if (!files) return noFileSystem(path, "listed");
    return files->list(path);
}

Result<std::unique_ptr<FileLock>> FileManager::lockExclusively(std::string_view path, double seconds) {
    const auto files = fileSystem();
    if (!files) return noFileSystem(path, "locked");
    return files->lockExclusively(path, seconds);
}

Result<std::unique_ptr<FileHistory>> FileManager::openHistory(std::string_view path, Missing missing) {
    const auto files = fileSystem();
    if (!files) return noFileSystem(path, "kept");
    return files->openHistory(path, missing);
}

std::string stringByAppendingPathComponent(std::string_view path, std::string_view component) {
    if (path.empty()) return std::string(component);
    const std::size_t last = path.find_last_not_of('/');
    const std::size_t first = component.find_first_not_of('/');
    std::string joined(path.substr(0, last == std::string_view::npos ? 0 : last + 1));
    if (first == std::string_view::npos) return joined.empty() ? "/" : joined;
    return joined + "/" + std::string(component.substr(first));
}

}  // namespace platform
