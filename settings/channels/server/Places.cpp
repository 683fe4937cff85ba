// SPDX-License-Identifier: MIT
#include "settings/channels/server/Places.h"

#include <algorithm>
#include <utility>

namespace settings::server {

Places::Place::Place(Place&& other) noexcept
    : places_(std::exchange(other.places_, nullptr)), holder_(other.holder_) {}

Places::Place::~Place() {
    if (places_) holder_->home->erase(holder_);
}

void Places::Place::set(Activity activity) {
    holder_->activity = activity;
    Holders& home = *holder_->home;
    if (activity == Activity::Idle) home.splice(home.end(), home, holder_);
}

bool Places::Place::becomeKnown() {
    if (isKnown()) return true;
    if (holder_->home == &places_->leaving_) return false;
    Holders& known = places_->known_;
    if (known.size() >= places_->knownLimit_ && !places_->endOneOf(known, Choice::IdleOnly)) return false;
    known.splice(known.end(), places_->strangers_, holder_);
    holder_->home = &known;
    return true;
}

bool Places::Place::isKnown() const {
    return holder_->home == &places_->known_;
}

void Places::Place::setLeave(Leave leave) {
    // Who was told to leave while it changed its shape leaves in the new one.
    if (holder_->home == &places_->leaving_) return leave();
    holder_->leave = std::move(leave);
}

Places::Place Places::enter(Leave leave) {
    if (strangers_.size() >= strangersLimit_) endOneOf(strangers_, Choice::IdleFirst);
    strangers_.push_back({&strangers_, Activity::Idle, std::move(leave)});
    return {*this, std::prev(strangers_.end())};
}

bool Places::makeRoom() {
    return endOneOf(strangers_, Choice::IdleFirst) || endOneOf(known_, Choice::IdleOnly);
}

bool Places::endOneOf(Holders& holders, Choice choice) {
    auto chosen = std::ranges::find(holders, Activity::Idle, &Holder::activity);
    if (chosen == holders.end() && choice == Choice::IdleFirst) chosen = holders.begin();
    if (chosen == holders.end()) return false;
    leaving_.splice(leaving_.end(), holders, chosen);
    chosen->home = &leaving_;
    if (const Leave leave = std::exchange(chosen->leave, {})) leave();
    return true;
}

}  // namespace settings::server
