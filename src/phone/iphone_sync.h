// The phone sync: the user's artist list sent to the service's phone
// exchange ("/iphone/exchange.php"), so that the companion phone application
// shows concerts for the same artists. The service knows the user by the
// sharing account (user name, password) and the installation's UUID.
//
// Requests are GETs whose whole text has its blanks turned into "+", nothing
// else escaped; like every request address they are cut at 1023 characters,
// so a batch of very long names loses its end (deliberately not guarded).
// Artists go out in batches of names joined by "@@", each sent as soon as
// it passes 800 characters.
//
// Threads: update thread (iPhoneSync_addAllArtists), or the main thread for
// iPhoneSync_Initialize from the preferences window. Both take the internet
// lock around each download themselves and block for its length.
#pragma once

class StagebeaconClass;

// A batch is sent once it is longer than this many characters.
constexpr int kPhoneBatchLength = 800;

// Registers the account with the phone exchange. 0: accepted; 1: the reply
// holds "<ERROR>" (the name belongs to someone else); 2: the download failed.
[[nodiscard]] int iPhoneSync_Initialize(StagebeaconClass* app);

// The phone task of an update: 0 when done or when the sync is off; 1 when
// it stopped early (a failed download, a taken name, a stop request). A
// taken name is reported with an alert handed to the main thread.
[[nodiscard]] int iPhoneSync_addAllArtists(StagebeaconClass* app);
