// SHARER: one user of the sharing service living in the user's city, as the
// preferences window's nearby list shows it, and the answers the sharing
// service gives to a registration or a name check. Shared by the sharing
// client, which reads them from the service, and the preferences window,
// which shows them.
//
// Threads: plain data; whoever holds a copy.
#pragma once

struct SHARER {
    char username[64] = {};
    char firstname[64] = {};
    char lastname[64] = {};
    char city[64] = {};
    char state[64] = {};
};

// Answers of the sharing registration and the friend check.
constexpr int kSharingAccepted = 0;
constexpr int kSharingRefused = 1; // the reply holds "Error"
constexpr int kSharingOffline = 2; // the download failed
