// Chooses the platform back ends from what the host offers at init. A
// headless host gets the plug-in's alerts, file dialogs and log lines
// through its services (its script answers them); a windowed host, or one
// without services, gets GTK dialogs when a display can be opened.
//
// Also fills the init record's optional answers for a scripted host: whether
// an update is running, and the plug-in's own script commands.
//
// Threads: main thread, at the entry point's init.
#pragma once

#include "player_api.h"

void useHostServices(PluginInitMessage* init);
