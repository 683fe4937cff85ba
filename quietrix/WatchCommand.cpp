// SPDX-License-Identifier: MIT
#include "quietrix/Commands.h"
#include "quietrix/ProfilesWatch.h"

namespace console {

void addWatch(Commands& commands) {
    commands.add("watch", "Tells each change while it happens, until it is ended").run([](Session& session) {
        ProfilesWatch(session).run();
        // Everything has been told.
        return Answer{.isData = true};
    });
}

}  // namespace console
