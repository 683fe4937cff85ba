// SPDX-License-Identifier: MIT
// A server whose WebSocket echoes, for test_server.py. Prints its address, then a line for each event, and
// ends with its standard input. Messages that do something else: "close" closes the connection; "burst COUNT
// BYTES" sends that many messages of that length; "throw" lets an exception out of the handler; one that
// begins with "hold" is not taken until a "release" comes, of whichever connection, which is answered with
// how many there were. The argument "sound:IDENTIFIER=TYPE" makes a sound of that media type that consists of
// its identifier; one of the type "never" is never answered, and the identifier "throw" is an exception.
#include <atomic>
#include <charconv>
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "settings/channels/server/Server.h"

namespace {

using Texts = std::map<std::string, std::string, std::less<>>;

class EchoHandler : public settings::server::ServerHandler {
  public:
    explicit EchoHandler(const Texts& sounds) : sounds_(sounds) {}

    /// A page may come before Server::start() has returned, so the calls wait until the server is known.
    void serveWith(settings::server::Server& server) {
        server_ = &server;
        server_.notify_all();
    }

    void opened(settings::server::ConnectionId connection) override { report("opened", connection); }
    void closed(settings::server::ConnectionId connection) override { report("closed", connection); }

    void received(settings::server::ConnectionId connection, std::string text) override {
        server_.wait(nullptr);
        settings::server::Server& server = *server_;
        std::istringstream words(text);
        std::string command;
        words >> command;
        if (command == "throw") throw std::runtime_error("asked for");
        if (command == "hold") {
            held_[connection].push_back(text.size());
            return;
        }
        if (command == "release") {
            std::size_t released = 0;
            for (const auto& [other, sizes] : std::exchange(held_, {})) {
                released += sizes.size();
                for (const std::size_t size : sizes) server.taken(other, size);
            }
            server.taken(connection, text.size());
            server.send(connection, "released " + std::to_string(released));
            return;
        }
        server.taken(connection, text.size());
        if (command == "close") {
            server.send(connection, "before the close");
            server.close(connection);
            server.send(connection, "after the close");
        } else if (command == "burst") {
            std::size_t count = 0;
            std::size_t bytes = 0;
            words >> count >> bytes;
            for (std::size_t index = 0; index < count; ++index)
                server.send(connection, std::string(bytes, 'x'));
        } else {
            // From another thread, as the application does.
            std::thread([&server, connection, &text] { server.send(connection, text); }).join();
        }
    }

    void soundAsked(settings::server::SoundRequestId request, std::string identifier) override {
        if (identifier == "throw") throw std::runtime_error("asked for");
        server_.wait(nullptr);
        settings::server::Server& server = *server_;
        const auto found = sounds_.find(identifier);
        if (found == sounds_.end())
            server.giveSound(request, platform::failure("There is no \"" + identifier + "\"."));
        else if (found->second != "never")
            server.giveSound(request,
                             platform::ToneSound{found->second, {identifier.begin(), identifier.end()}});
    }

  private:
    static void report(const char* event, settings::server::ConnectionId connection) {
        std::cout << event << ' ' << connection << std::endl;
    }

    const Texts& sounds_;
    /// The lengths of the messages that are not taken yet.
    std::map<settings::server::ConnectionId, std::vector<std::size_t>> held_;
    std::atomic<settings::server::Server*> server_ = nullptr;
};

int usage(const std::string& argument) {
    std::cerr << "unusable argument: " << argument << '\n';
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    settings::server::ServerOptions options;
    Texts images;
    Texts sounds;
    for (int index = 1; index < argc; ++index) {
        const std::string argument = argv[index];
        const std::size_t mark = argument.find('=');
        if (mark == std::string::npos) return usage(argument);
        const std::string key = argument.substr(0, mark);
        const std::string value = argument.substr(mark + 1);
        if (key == "page") {
            options.pageDirectory = value;
            continue;
        }
        if (key.starts_with("image:")) {
            images[key.substr(6)] = value;
            continue;
        }
        if (key.starts_with("sound:")) {
            sounds[key.substr(6)] = value;
            continue;
        }
        unsigned number = 0;
        if (std::from_chars(value.data(), value.data() + value.size(), number).ec != std::errc())
            return usage(argument);
        const std::map<std::string, std::chrono::milliseconds*, std::less<>> durations{
            {"soundTimeout", &options.limits.soundTimeout},
            {"requestTimeout", &options.limits.requestTimeout},
            {"strangerTimeout", &options.limits.strangerTimeout},
            {"idleTimeout", &options.limits.idleTimeout}};
        const std::map<std::string, std::size_t*, std::less<>> sizes{
            {"queuedBytes", &options.limits.queuedBytes},
            {"inboxBytes", &options.limits.inboxBytes},
            {"connections", &options.limits.connections},
            {"strangers", &options.limits.strangers}};
        if (key == "port")
            options.port = static_cast<std::uint16_t>(number);
        else if (const auto duration = durations.find(key); duration != durations.end())
            *duration->second = std::chrono::milliseconds(number);
        else if (const auto size = sizes.find(key); size != sizes.end())
            *size->second = number;
        else
            return usage(argument);
    }
    options.imageFile = [&images](std::string_view name) -> std::optional<std::string> {
        const auto found = images.find(name);
        if (found == images.end()) return std::nullopt;
        return found->second;
    };

    EchoHandler handler(sounds);
    auto server = settings::server::Server::start(options, handler);
    if (!server) {
        std::cerr << server.error().localizedDescription << '\n';
        return 1;
    }
    handler.serveWith(**server);
    std::cout << (*server)->url() << std::endl;
    std::string line;
    while (std::getline(std::cin, line)) {
    }
    server->reset();
    std::cout << "ended" << std::endl;
    return 0;
}
