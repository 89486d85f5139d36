// SPDX-License-Identifier: MIT
// The media library behind the filter graphs.
#pragma once

#include <gst/gst.h>

namespace platform::desktop {

/// Begins to bring the media library up, on a thread of its own; the first run on a machine takes
/// most of a second. Graphs may be made before it is ready.
void WarmUpMedia();

/// Makes the end of each graph's chain, called on the media thread; nullptr, as at the start, for
/// the desktop's own sound output.
void SetAudioSinkMaker(GstElement* (*maker)());

}  // namespace platform::desktop
