// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/foundation/Error.h"
#include "settings/channels/ServedChannel.h"
#include "settings/recording/RecordedMoments.h"
#include "settings/recording/RecordingImages.h"
#include "settings/recording/RecordingViewer.h"

namespace settings {

/// The channel of a page that shows a recording in place of a phone. Main thread.
class RecordingView : private ServedChannel {
  public:
    RecordingView(RecordedMoments moments, RecordingImages images);
    ~RecordingView() override;

    /// Starts listening on any free port, prints the address, which opens the page with the timeline, and
    /// runs until a signal asks it to end. A host path. An error says why it could not begin.
    platform::Result<void> run(const std::string& pageDirectory);

  private:
    void handleInbox() override;

    RecordingViewer viewer_;
    RecordingImages images_;
};

}  // namespace settings
