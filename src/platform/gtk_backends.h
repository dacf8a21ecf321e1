// The windowed back ends of the platform interfaces: GTK dialogs for alerts
// and file choices, xdg-open for pages. A plug-in loaded by a windowed host
// installs them once, on the main thread, after the host has opened its
// display; without them every interface keeps its headless back end.
#pragma once

#include <string>

#include "platform/alert.h"
#include "platform/file_dialog.h"

// True when GTK could be initialised on a display (the host's, when it has
// one). Call on the main thread.
bool gtkDisplayAvailable();

// Alerts, file dialogs and the page opener (xdg-open) through GTK. The
// features' own windows install their GTK faces themselves.
void installGtkBackends();

AlertButton runGtkAlert(const AlertRequest& request);
bool chooseFileToOpenGtk(const FileOpenRequest& request, std::string* chosen);
bool chooseFileToSaveGtk(const FileSaveRequest& request, std::string* chosen);
