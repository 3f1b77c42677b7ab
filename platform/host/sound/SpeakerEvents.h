// Makes the speaker-changed events out of what the sound server does.
#pragma once

namespace corvane::host {

/// Starts or stops the watch over the sound server, as there is a speaker-changed callback
/// or not: from the main loop, so that whoever sets the callback doesn't wait for it. To be
/// called after each change of the callback, on any thread; never calls it. The callback is
/// called on the main thread. Without a main loop there is no watch.
void followSpeakerCallback() noexcept;

}  // namespace corvane::host
