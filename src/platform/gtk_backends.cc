#include <gtk/gtk.h>

#include "platform/gtk_backends.h"
#include "platform/page_opener.h"

bool gtkDisplayAvailable() {
    return gtk_init_check(nullptr, nullptr) && gdk_display_get_default() != nullptr;
}

void installGtkBackends() {
    setAlertBackend(runGtkAlert);
    setFileDialogBackend(chooseFileToOpenGtk);
    setFileSaveDialogBackend(chooseFileToSaveGtk);
    setPageOpenerBackend(openPageDesktop);
}
