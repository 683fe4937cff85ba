// SPDX-License-Identifier: MIT
// Property lists beside libplist, and beside Python's plistlib in a process of its own. Each side also frees
// what it made within the time that is taken; plistlib's collector runs when it likes.
//     property-list-bench PYTHON PEER_SCRIPT
#include <plist/plist.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include "bench/ManyProfiles.h"
#include "bench/Rounds.h"
#include "platform/foundation/PropertyList.h"

namespace {

using bench::Clock;
using platform::Data;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Value;

/// Nothing else than this may look at the result, so the compiler has to have it made.
template <class T>
void keep(const T& result) {
    asm volatile("" : : "r"(&result) : "memory");
}

Data written(const Value& value, PropertyListFormat format) {
    return PropertyListSerialization::dataWithPropertyList(value, format).value();
}

plist_t readByPeer(const Data& bytes, PropertyListFormat format) {
    plist_t root = nullptr;
    const auto* text = reinterpret_cast<const char*>(bytes.data());
    const auto length = static_cast<std::uint32_t>(bytes.size());
    if (format == PropertyListFormat::Binary) {
        plist_from_bin(text, length, &root);
    } else {
        plist_from_xml(text, length, &root);
    }
    if (root == nullptr) std::abort();
    return root;
}

void writeByPeer(plist_t root, PropertyListFormat format) {
    char* text = nullptr;
    std::uint32_t length = 0;
    if (format == PropertyListFormat::Binary) {
        plist_to_bin(root, &text, &length);
    } else {
        plist_to_xml(root, &text, &length);
    }
    if (text == nullptr) std::abort();
    (format == PropertyListFormat::Binary ? plist_to_bin_free : plist_to_xml_free)(text);
}

/// Python, which is told over a pipe what to do and how often, and answers how long that took.
class Plistlib {
  public:
    Plistlib(const std::string& python, const std::string& script, const Data& bytes)
        : path_((std::filesystem::temp_directory_path() / "property-list-bench-XXXXXX").string()) {
        const int file = mkstemp(path_.data());
        if (file < 0 || ::write(file, bytes.data(), bytes.size()) != std::ssize(bytes)) std::abort();
        close(file);
        std::array<int, 2> commands{};
        std::array<int, 2> answers{};
        if (pipe(commands.data()) != 0 || pipe(answers.data()) != 0) std::abort();
        if (fork() == 0) {
            dup2(commands[0], STDIN_FILENO);
            dup2(answers[1], STDOUT_FILENO);
            for (const int end : {commands[0], commands[1], answers[0], answers[1]}) close(end);
            execlp(python.c_str(), python.c_str(), "-B", script.c_str(), path_.c_str(), nullptr);
            _exit(127);
        }
        close(commands[0]);
        close(answers[1]);
        commands_ = fdopen(commands[1], "w");
        answers_ = fdopen(answers[0], "r");
    }
    /// Python ends with its input.
    ~Plistlib() {
        fclose(commands_);
        fclose(answers_);
        unlink(path_.c_str());
    }
    Plistlib(const Plistlib&) = delete;
    Plistlib& operator=(const Plistlib&) = delete;

    double turn(const char* what, std::int64_t repetitions) {
        std::fprintf(commands_, "%s %lld\n", what, static_cast<long long>(repetitions));
        std::fflush(commands_);
        double seconds = 0;
        if (std::fscanf(answers_, "%lf", &seconds) != 1) std::abort();
        return seconds;
    }

  private:
    std::string path_;
    FILE* commands_ = nullptr;
    FILE* answers_ = nullptr;
};

/// libplist's writer looks through all that it has written for each value.
constexpr std::int64_t longestForPeersWriter = 10'000;

struct Targets {
    double reading;
    double writing;
};

void compareWithLibplist(std::int64_t count, PropertyListFormat format, Targets targets) {
    const Value value = bench::manyProfiles(count);
    const Data bytes = written(value, format);
    const std::string kind = format == PropertyListFormat::Binary ? "Binary" : "XML";
    const std::string at = bench::grouped(count) + " profiles";
    bench::compare(
        {kind + " property list, read to values", at, "libplist", bench::atLeast(targets.reading)},
        bench::Figure::TimesFaster,
        bench::timed(Clock::Processor,
                     [&] { keep(PropertyListSerialization::propertyListWithData(bytes).value()); }),
        bench::timed(Clock::Processor, [&] { plist_free(readByPeer(bytes, format)); }));
    if (count > longestForPeersWriter) return;
    plist_t root = readByPeer(bytes, format);
    bench::compare(
        {kind + " property list, written from values", at, "libplist", bench::atLeast(targets.writing)},
        bench::Figure::TimesFaster, bench::timed(Clock::Processor, [&] { keep(written(value, format)); }),
        bench::timed(Clock::Processor, [&] { writeByPeer(root, format); }));
    plist_free(root);
}

void compareWithPlistlib(std::int64_t count, const std::string& python, const std::string& script) {
    const Value value = bench::manyProfiles(count);
    const Data bytes = written(value, PropertyListFormat::Binary);
    const std::string at = bench::grouped(count) + " profiles";
    Plistlib peer(python, script, bytes);
    bench::compare(
        {"Binary property list, read to values", at, "Python's plistlib", {}}, bench::Figure::TimesFaster,
        bench::timed(Clock::Processor,
                     [&] { keep(PropertyListSerialization::propertyListWithData(bytes).value()); }),
        [&](std::int64_t repetitions) { return peer.turn("read", repetitions); });
    bench::compare({"Binary property list, written from values", at, "Python's plistlib", {}},
                   bench::Figure::TimesFaster,
                   bench::timed(Clock::Processor, [&] { keep(written(value, PropertyListFormat::Binary)); }),
                   [&](std::int64_t repetitions) { return peer.turn("write", repetitions); });
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
    if (argumentCount != 3) {
        std::cerr << "usage: property-list-bench PYTHON PEER_SCRIPT\n";
        return 2;
    }
    for (const std::int64_t count : {10, 1000, 100'000}) {
        compareWithLibplist(count, PropertyListFormat::Binary, {3, 5});
        compareWithPlistlib(count, argumentValues[1], argumentValues[2]);
    }
    for (const std::int64_t count : {10, 1000}) compareWithLibplist(count, PropertyListFormat::XML, {2, 2});
}
