// The file-open dialog as a GTK file chooser.
#include <gtk/gtk.h>

#include "platform/gtk_backends.h"

bool chooseFileToOpenGtk(const FileOpenRequest& request, std::string* chosen) {
    GtkWidget* dialog = gtk_file_chooser_dialog_new(
        request.title.c_str(), nullptr, GTK_FILE_CHOOSER_ACTION_OPEN, "_Cancel",
        GTK_RESPONSE_CANCEL, "_Open", GTK_RESPONSE_ACCEPT, nullptr);
    if (!request.message.empty()) {
        GtkWidget* label = gtk_label_new(request.message.c_str());
        gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
        gtk_file_chooser_set_extra_widget(GTK_FILE_CHOOSER(dialog), label);
    }
    bool answered = false;
    if (gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_ACCEPT) {
        char* path = gtk_file_chooser_get_filename(GTK_FILE_CHOOSER(dialog));
        if (path) {
            *chosen = path;
            answered = true;
            g_free(path);
        }
    }
    gtk_widget_destroy(dialog);
    return answered;
}
