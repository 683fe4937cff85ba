// SPDX-License-Identifier: MIT
#include "settings/channels/Clients.h"

#include <algorithm>
#include <utility>

namespace settings {

using server::ConnectionId;

Clients::Clients(Application& application, Send send, Taken taken)
    : application_(application), send_(std::move(send)), taken_(std::move(taken)) {}

void Clients::opened(ConnectionId connection) {
    clients_.try_emplace(connection, application_);
}

void Clients::received(ConnectionId connection, std::string command) {
    const auto entry = clients_.find(connection);
    if (entry == clients_.end()) return taken_(connection, command.size());
    entry->second.commands.push_back(std::move(command));
}

void Clients::closed(ConnectionId connection) {
    const auto entry = clients_.find(connection);
    if (entry == clients_.end()) return;
    entry->second.hasLeft = true;
    if (!entry->second.isReady()) forget(entry);
}

bool Clients::answerNext() {
    // A command forgets all but the newest events.
    endWaits();
    const auto entry = nextReady();
    if (entry == clients_.end()) return false;
    auto& [connection, client] = *entry;
    lastAnswered_ = connection;
    const std::string command = std::move(client.commands.front());
    client.commands.pop_front();
    if (auto answer = client.session.begin(command)) send_(connection, std::move(*answer));
    taken_(connection, command.size());
    if (client.hasLeft && !client.isReady()) forget(entry);
    return true;
}

bool Clients::hasCommands() const {
    return std::ranges::any_of(clients_, [](const auto& entry) { return entry.second.isReady(); });
}

void Clients::showChanges() {
    endWaits();
    for (auto& [connection, client] : clients_) {
        if (auto state = client.session.push()) send_(connection, std::move(*state));
    }
}

std::optional<std::chrono::steady_clock::time_point> Clients::nextDeadline() const {
    std::optional<std::chrono::steady_clock::time_point> first;
    for (const auto& [connection, client] : clients_) {
        const auto deadline = client.session.waitsUntil();
        if (deadline && (!first || *deadline < *first)) first = deadline;
    }
    return first;
}

Clients::Entries::iterator Clients::nextReady() {
    const auto isReady = [](const auto& entry) { return entry.second.isReady(); };
    const auto after = clients_.upper_bound(lastAnswered_);
    const auto found = std::find_if(after, clients_.end(), isReady);
    if (found != clients_.end()) return found;
    const auto before = std::find_if(clients_.begin(), after, isReady);
    return before == after ? clients_.end() : before;
}

void Clients::endWaits() {
    for (auto& [connection, client] : clients_) {
        if (!client.session.isWaiting()) continue;
        if (auto answer = client.session.resume()) send_(connection, std::move(*answer));
    }
}

void Clients::forget(Entries::iterator entry) {
    for (const std::string& command : entry->second.commands) taken_(entry->first, command.size());
    clients_.erase(entry);
}

}  // namespace settings
