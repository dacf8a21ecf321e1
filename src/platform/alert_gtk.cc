// Alerts as modal GTK message dialogs: the title as primary text, the long
// text as secondary text.
#include <gtk/gtk.h>

#include "platform/gtk_backends.h"

AlertButton runGtkAlert(const AlertRequest& request) {
    GtkWidget* dialog = gtk_message_dialog_new(nullptr, GTK_DIALOG_MODAL, GTK_MESSAGE_WARNING,
                                               GTK_BUTTONS_NONE, "%s", request.title.c_str());
    gtk_message_dialog_format_secondary_text(GTK_MESSAGE_DIALOG(dialog), "%s",
                                             request.text.c_str());
    if (!request.cancelButton.empty())
        gtk_dialog_add_button(GTK_DIALOG(dialog), request.cancelButton.c_str(),
                              GTK_RESPONSE_CANCEL);
    gtk_dialog_add_button(GTK_DIALOG(dialog), request.defaultButton.c_str(), GTK_RESPONSE_OK);
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_OK);
    gint response = gtk_dialog_run(GTK_DIALOG(dialog));
    gtk_widget_destroy(dialog);
    // Closing the window counts as the default button when there is no
    // other choice, as the cancel button otherwise.
    if (response == GTK_RESPONSE_OK) return AlertButton::Default;
    return request.cancelButton.empty() ? AlertButton::Default : AlertButton::Cancel;
}
