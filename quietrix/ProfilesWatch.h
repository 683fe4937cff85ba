// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "quietrix/FolderWatch.h"
#include "quietrix/ProfileDifference.h"
#include "quietrix/Session.h"

namespace console {

/// Tells what changes in a root: its profiles, and the product's switch. It compares the files' states, when
/// a notification or the directory says that there may be another one, and once a second in any case. So what
/// is told always leads from one state that the files had to a later one; changes that lie between two looks
/// are told as one for each profile. Main thread.
class ProfilesWatch {
  public:
    explicit ProfilesWatch(Session& session);
    ProfilesWatch(const ProfilesWatch&) = delete;
    ProfilesWatch& operator=(const ProfilesWatch&) = delete;

    /// Tells until a signal ends it, or nobody reads what it tells any more.
    void run();

  private:
    struct State {
        std::string title;
        platform::Dictionary values;
    };
    using States = std::map<std::string, State>;

    void observe();
    void tick();
    void connect();
    void look();
    void lookAtProfiles();
    void lookAtSwitch();
    void tell(std::string_view event, const std::string& identifier, const std::string& title,
              const platform::Dictionary& before, const platform::Dictionary& after);
    void tell(std::string_view event);
    void write(const std::string& line);

    Session& session_;
    FolderWatch folder_;
    bool isConnected_ = false;
    bool hasSaidWhyNot_ = false;
    /// As they were last taken over; the same records are the same state.
    Session::Records records_;
    States states_;
    bool isOn_ = false;
    /// Nothing is told before what is there at the beginning is known.
    bool tells_ = false;
};

}  // namespace console
