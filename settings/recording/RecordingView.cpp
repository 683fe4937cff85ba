// SPDX-License-Identifier: MIT
#include "settings/recording/RecordingView.h"

#include <string_view>
#include <utility>

#include "platform/foundation/RunLoop.h"

namespace settings {

using platform::Result;

RecordingView::RecordingView(RecordedMoments moments, RecordingImages images)
    : viewer_(std::move(moments)), images_(std::move(images)) {}

RecordingView::~RecordingView() {
    endServer();
}

Result<void> RecordingView::run(const std::string& pageDirectory) {
    if (Result<void> watched = watch(); !watched) return watched;
    server::ServerOptions options;
    options.pageDirectory = pageDirectory;
    options.imageFile = [this](std::string_view name) { return images_.file(name); };
    return serve(std::move(options), "?workbench=timeline");
}

void RecordingView::handleInbox() {
    for (const Message& message : takeAll()) {
        if (isEnding()) return platform::RunLoop::main().stop();
        if (message.kind == Message::Kind::SoundAsked)
            server().giveSound(message.id, platform::failure("A recording has no sounds."));
        if (message.kind != Message::Kind::Received) continue;
        server().send(message.id, viewer_.answer(message.text));
        server().taken(message.id, message.text.size());
    }
}

}  // namespace settings
