// What an MPRIS player's properties mean for the app: its Metadata
// dictionary as a track, its PlaybackStatus as a status. Plain GVariant
// reading, no bus, so every malformed shape can be tested headless.
//
// Threads: any.
#pragma once

#include <glib.h>

#include <string>

#include "mpris_choice.h"

// The track in `metadata` (a{sv}): the artist is the first non-empty
// xesam:artist, else the first non-empty xesam:albumArtist; album from
// xesam:album, title from xesam:title. A field of the wrong type (a string
// where a list of strings belongs, a number...) is skipped and named in
// `problems`; a missing field is just empty. false, with the reason in
// problems, when `metadata` is not a dictionary at all: the caller keeps the
// track it had.
bool mprisTrackFromMetadata(GVariant* metadata, MprisTrack& track, std::string& problems);

// "Playing", "Paused" or "Stopped" (a string, maybe boxed in a variant).
// false for anything else.
bool mprisStatusFromVariant(GVariant* value, MprisStatus& status);
