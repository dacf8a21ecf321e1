// The file dialogs as GTK file choosers.
#include <gtk/gtk.h>

#include "platform/gtk_backends.h"

namespace {

GtkWidget* makeChooser(const std::string& title, const std::string& message,
                       GtkFileChooserAction action, const char* acceptLabel) {
    GtkWidget* dialog =
        gtk_file_chooser_dialog_new(title.c_str(), nullptr, action, "_Cancel", GTK_RESPONSE_CANCEL,
                                    acceptLabel, GTK_RESPONSE_ACCEPT, nullptr);
    if (!message.empty()) {
        GtkWidget* label = gtk_label_new(message.c_str());
        gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
        gtk_file_chooser_set_extra_widget(GTK_FILE_CHOOSER(dialog), label);
    }
    return dialog;
}

// Runs the dialog and destroys it; true with the chosen path.
bool runChooser(GtkWidget* dialog, std::string* chosen) {
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

} // namespace

bool chooseFileToOpenGtk(const FileOpenRequest& request, std::string* chosen) {
    return runChooser(
        makeChooser(request.title, request.message, GTK_FILE_CHOOSER_ACTION_OPEN, "_Open"), chosen);
}

bool chooseFileToSaveGtk(const FileSaveRequest& request, std::string* chosen) {
    GtkWidget* dialog =
        makeChooser(request.title, request.message, GTK_FILE_CHOOSER_ACTION_SAVE, "_Save");
    gtk_file_chooser_set_do_overwrite_confirmation(GTK_FILE_CHOOSER(dialog), TRUE);
    if (!request.suggestedName.empty())
        gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(dialog), request.suggestedName.c_str());
    return runChooser(dialog, chosen);
}
