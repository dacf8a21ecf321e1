// The preferences window as GTK widgets. Every event goes to the logic
// (PreferencesControlHandler and friends), which collects the widgets into
// the model before acting and refreshes them afterwards; while refreshing,
// the signals our own changes raise are ignored, so an event never comes
// back as another one.
//
// Carbon-style rules kept here: a radio button reports only when it is
// turned on (the logic switches its partner), the nearby list's order is the
// logic's (a header click asks it to sort), and the panes of the tabs are
// the notebook's pages, whose sensitivity follows the selected tab.
#include "prefs/gtk/preferences_window_gtk.h"

#include <gtk/gtk.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/resources_folder.h"

namespace {

constexpr const char* kWindowId = "Stagebeacon_Preferences";
constexpr const char* kTabControlId = "tabs_128";
constexpr const char* kNearbyTitles[] = {"User name", "First name", "Last name", "City", "State"};
constexpr int kNearbyColumnCount = 5;

struct GtkPreferences {
    GtkBuilder* builder = nullptr;
    GtkWidget* window = nullptr;
    std::vector<GtkWidget*> controls; // the widget of each control, in table order
    GtkListStore* friends = nullptr;  // item number, name
    GtkListStore* nearby = nullptr;   // item number, five columns
    std::vector<GtkTreeViewColumn*> nearbyColumns;
    bool refreshing = false;
};

GtkPreferences ui;

GtkWidget* byId(const char* id) {
    GObject* object = gtk_builder_get_object(ui.builder, id);
    return object && GTK_IS_WIDGET(object) ? GTK_WIDGET(object) : nullptr;
}

GtkWidget* widgetOf(const ControlID& cid) {
    for (size_t i = 0; i < kPreferenceControlCount; ++i)
        if (kPreferenceControls[i].cid.id == cid.id) return ui.controls[i];
    return nullptr;
}

// Lists and text areas sit in a scrolled window, which is what shows.
GtkWidget* frameOf(GtkWidget* widget) {
    GtkWidget* parent = gtk_widget_get_parent(widget);
    return parent && GTK_IS_SCROLLED_WINDOW(parent) ? parent : widget;
}

std::string textOf(GtkWidget* widget) {
    if (GTK_IS_ENTRY(widget)) return gtk_entry_get_text(GTK_ENTRY(widget));
    if (GTK_IS_LABEL(widget)) return gtk_label_get_text(GTK_LABEL(widget));
    if (!GTK_IS_TEXT_VIEW(widget)) return std::string();
    GtkTextBuffer* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(widget));
    GtkTextIter start, end;
    gtk_text_buffer_get_bounds(buffer, &start, &end);
    gchar* text = gtk_text_buffer_get_text(buffer, &start, &end, FALSE);
    std::string copy = text ? text : "";
    g_free(text);
    return copy;
}

void setTextOf(GtkWidget* widget, const std::string& text) {
    if (textOf(widget) == text) return; // keeps the cursor where the user left it
    if (GTK_IS_ENTRY(widget))
        gtk_entry_set_text(GTK_ENTRY(widget), text.c_str());
    else if (GTK_IS_LABEL(widget))
        gtk_label_set_text(GTK_LABEL(widget), text.c_str());
    else if (GTK_IS_TEXT_VIEW(widget))
        gtk_text_buffer_set_text(gtk_text_view_get_buffer(GTK_TEXT_VIEW(widget)), text.c_str(), -1);
}

// True when `store` already shows `rows` (so a refresh need not rebuild it
// and lose the user's scroll position and selection).
bool storeShows(GtkListStore* store, const std::vector<ListRow>& rows) {
    GtkTreeModel* model = GTK_TREE_MODEL(store);
    GtkTreeIter iter;
    size_t index = 0;
    for (gboolean more = gtk_tree_model_get_iter_first(model, &iter); more;
         more = gtk_tree_model_iter_next(model, &iter), ++index) {
        if (index >= rows.size()) return false;
        for (size_t column = 0; column < rows[index].cells.size(); ++column) {
            gchar* text = nullptr;
            gtk_tree_model_get(model, &iter, static_cast<gint>(column) + 1, &text, -1);
            bool same = rows[index].cells[column] == (text ? text : "");
            g_free(text);
            if (!same) return false;
        }
    }
    return index == rows.size();
}

void fillStore(GtkListStore* store, const std::vector<ListRow>& rows) {
    if (storeShows(store, rows)) return;
    gtk_list_store_clear(store);
    for (const ListRow& row : rows) {
        GtkTreeIter iter;
        gtk_list_store_append(store, &iter);
        gtk_list_store_set(store, &iter, 0, row.item, -1);
        for (size_t column = 0; column < row.cells.size(); ++column)
            gtk_list_store_set(store, &iter, static_cast<gint>(column) + 1,
                               row.cells[column].c_str(), -1);
    }
}

void selectItem(GtkWidget* view, GtkListStore* store, int item) {
    GtkTreeSelection* selection = gtk_tree_view_get_selection(GTK_TREE_VIEW(view));
    GtkTreeModel* model = GTK_TREE_MODEL(store);
    GtkTreeIter iter;
    for (gboolean more = gtk_tree_model_get_iter_first(model, &iter); more;
         more = gtk_tree_model_iter_next(model, &iter)) {
        int shown = 0;
        gtk_tree_model_get(model, &iter, 0, &shown, -1);
        if (shown == item) {
            gtk_tree_selection_select_iter(selection, &iter);
            return;
        }
    }
    gtk_tree_selection_unselect_all(selection);
}

void refreshWidgets(PreferencesWindow& window) {
    ui.refreshing = true;
    PreferencesModel& model = window.model;
    for (size_t i = 0; i < kPreferenceControlCount; ++i) {
        const ControlInfo& control = kPreferenceControls[i];
        GtkWidget* widget = ui.controls[i];
        const ControlState& state = model.at(control.cid);
        gtk_widget_set_visible(frameOf(widget), state.visible);
        gtk_widget_set_sensitive(widget, state.enabled);
        if (control.kind == ControlKind::TextBox) setTextOf(widget, state.text);
        // A radio button cannot be turned off directly: turning its partner
        // on does it.
        bool toggle = control.kind == ControlKind::CheckBox ||
                      (control.kind == ControlKind::RadioButton && state.value);
        if (toggle) gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(widget), state.value);
    }
    fillStore(ui.friends, model.friendRows);
    selectItem(widgetOf(CID_SHARING_LBOX_friendList), ui.friends, window.iFriendListItemSelected);
    fillStore(ui.nearby, model.nearbyRows);
    selectItem(widgetOf(CID_SHARING_LBOX_seeLocalFriends), ui.nearby,
               window.iLocalListItemSelected);
    for (int column = 0; column < kNearbyColumnCount; ++column) {
        GtkTreeViewColumn* header = ui.nearbyColumns[column];
        gtk_tree_view_column_set_sort_indicator(header,
                                                model.nearbySortColumn == kNearbyColumns[column]);
        gtk_tree_view_column_set_sort_order(
            header, model.nearbySortAscending ? GTK_SORT_ASCENDING : GTK_SORT_DESCENDING);
    }
    gtk_notebook_set_current_page(GTK_NOTEBOOK(byId(kTabControlId)), model.tabValue - 1);
    for (int position = 1; position <= tabList.count; ++position)
        gtk_widget_set_sensitive(byId(tabPaneName(position)), tabPaneShown(window, position));
    ui.refreshing = false;
}

void collectWidgets(PreferencesWindow& window) {
    for (size_t i = 0; i < kPreferenceControlCount; ++i) {
        const ControlInfo& control = kPreferenceControls[i];
        ControlState& state = window.model.at(control.cid);
        if (control.kind == ControlKind::TextBox)
            state.text = textOf(ui.controls[i]);
        else if (control.kind == ControlKind::CheckBox || control.kind == ControlKind::RadioButton)
            state.value = gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(ui.controls[i]));
    }
}

void onClicked(GtkButton*, gpointer number) {
    if (!ui.refreshing) PreferencesControlHandler(GPOINTER_TO_INT(number));
}

void onToggled(GtkToggleButton* button, gpointer number) {
    if (ui.refreshing) return;
    if (GTK_IS_RADIO_BUTTON(button) && !gtk_toggle_button_get_active(button)) return;
    PreferencesControlHandler(GPOINTER_TO_INT(number));
}

void onPageSwitched(GtkNotebook*, GtkWidget*, guint page, gpointer) {
    if (!ui.refreshing) preferencesTabSwitched(static_cast<int>(page) + 1);
}

void onSelectionChanged(GtkTreeSelection* selection, gpointer listNumber) {
    if (ui.refreshing) return;
    GtkTreeModel* model = nullptr;
    GtkTreeIter iter;
    int item = 0;
    if (gtk_tree_selection_get_selected(selection, &model, &iter))
        gtk_tree_model_get(model, &iter, 0, &item, -1);
    preferencesRowSelected(GPOINTER_TO_INT(listNumber), item);
}

void onHeaderClicked(GtkTreeViewColumn*, gpointer column) {
    preferencesColumnClicked(kNearbyColumns[GPOINTER_TO_INT(column)]);
}

gboolean onDelete(GtkWidget*, GdkEvent*, gpointer) {
    PreferencesControlHandler(CID_MAIN_BTTN_cancel.id); // closes the window itself
    return TRUE;
}

GtkTreeViewColumn* addColumn(GtkWidget* view, const char* title, int storeColumn) {
    GtkTreeViewColumn* column = gtk_tree_view_column_new_with_attributes(
        title, gtk_cell_renderer_text_new(), "text", storeColumn, nullptr);
    gtk_tree_view_column_set_resizable(column, TRUE);
    gtk_tree_view_append_column(GTK_TREE_VIEW(view), column);
    return column;
}

void connectList(GtkWidget* view, GtkListStore* store, const ControlID& cid) {
    gtk_tree_view_set_model(GTK_TREE_VIEW(view), GTK_TREE_MODEL(store));
    g_signal_connect(gtk_tree_view_get_selection(GTK_TREE_VIEW(view)), "changed",
                     G_CALLBACK(onSelectionChanged), GINT_TO_POINTER(cid.id));
}

void setUpLists() {
    ui.friends = gtk_list_store_new(2, G_TYPE_INT, G_TYPE_STRING);
    GtkWidget* friends = widgetOf(CID_SHARING_LBOX_friendList);
    connectList(friends, ui.friends, CID_SHARING_LBOX_friendList);
    addColumn(friends, "Friend", 1);

    ui.nearby = gtk_list_store_new(6, G_TYPE_INT, G_TYPE_STRING, G_TYPE_STRING, G_TYPE_STRING,
                                   G_TYPE_STRING, G_TYPE_STRING);
    GtkWidget* nearby = widgetOf(CID_SHARING_LBOX_seeLocalFriends);
    connectList(nearby, ui.nearby, CID_SHARING_LBOX_seeLocalFriends);
    for (int column = 0; column < kNearbyColumnCount; ++column) {
        GtkTreeViewColumn* header = addColumn(nearby, kNearbyTitles[column], column + 1);
        gtk_tree_view_column_set_clickable(header, TRUE);
        g_signal_connect(header, "clicked", G_CALLBACK(onHeaderClicked), GINT_TO_POINTER(column));
        ui.nearbyColumns.push_back(header);
    }
}

void connectControls() {
    for (size_t i = 0; i < kPreferenceControlCount; ++i) {
        const ControlInfo& control = kPreferenceControls[i];
        gpointer number = GINT_TO_POINTER(control.cid.id);
        if (control.kind == ControlKind::Button)
            g_signal_connect(ui.controls[i], "clicked", G_CALLBACK(onClicked), number);
        else if (control.kind == ControlKind::CheckBox || control.kind == ControlKind::RadioButton)
            g_signal_connect(ui.controls[i], "toggled", G_CALLBACK(onToggled), number);
    }
    g_signal_connect_after(byId(kTabControlId), "switch-page", G_CALLBACK(onPageSwitched), nullptr);
    g_signal_connect(ui.window, "delete-event", G_CALLBACK(onDelete), nullptr);
}

// Whether the widget of `control` is of a type its kind can be read from.
bool fitsKind(GtkWidget* widget, ControlKind kind) {
    switch (kind) {
    case ControlKind::TextBox:
        return GTK_IS_ENTRY(widget) || GTK_IS_TEXT_VIEW(widget);
    case ControlKind::Button:
        return GTK_IS_BUTTON(widget);
    case ControlKind::CheckBox:
    case ControlKind::RadioButton:
        return GTK_IS_TOGGLE_BUTTON(widget);
    case ControlKind::ListBox:
        return GTK_IS_TREE_VIEW(widget);
    case ControlKind::StaticText:
        return GTK_IS_LABEL(widget);
    }
    return false;
}

void releaseWindow() {
    if (ui.window) gtk_widget_destroy(ui.window);
    if (ui.builder) g_object_unref(ui.builder);
    if (ui.friends) g_object_unref(ui.friends);
    if (ui.nearby) g_object_unref(ui.nearby);
    ui = GtkPreferences{};
}

// Finds the window and every control; false (with the reason on stderr)
// when the interface file lacks one.
bool lookUpControls() {
    ui.window = byId(kWindowId);
    if (!ui.window || !GTK_IS_WINDOW(ui.window) || !byId(kTabControlId)) {
        fprintf(stderr, "preferences: no window \"%s\" with tabs\n", kWindowId);
        return false;
    }
    for (int position = 1; position <= tabList.count; ++position) {
        if (byId(tabPaneName(position))) continue;
        fprintf(stderr, "preferences: no pane \"%s\"\n", tabPaneName(position));
        return false;
    }
    for (size_t i = 0; i < kPreferenceControlCount; ++i) {
        GtkWidget* widget = byId(kPreferenceControls[i].name);
        if (!widget || !fitsKind(widget, kPreferenceControls[i].kind)) {
            fprintf(stderr, "preferences: no fitting widget \"%s\"\n", kPreferenceControls[i].name);
            return false;
        }
        ui.controls.push_back(widget);
    }
    return true;
}

bool showWindow(PreferencesWindow& window) {
    releaseWindow();
    ui.builder = gtk_builder_new();
    GError* error = nullptr;
    std::string path = resourcePath("preferences.ui");
    if (!gtk_builder_add_from_file(ui.builder, path.c_str(), &error)) {
        fprintf(stderr, "preferences: %s\n", error->message);
        g_error_free(error);
        releaseWindow();
        return false;
    }
    if (!lookUpControls()) {
        releaseWindow();
        return false;
    }
    setUpLists();
    connectControls();
    refreshWidgets(window);
    gtk_window_present(GTK_WINDOW(ui.window));
    return true;
}

void closeWindow(PreferencesWindow&) {
    releaseWindow();
}

const PreferencesWindowBackend kGtkBackend = {showWindow, collectWidgets, refreshWidgets,
                                              closeWindow};

} // namespace

const PreferencesWindowBackend* gtkPreferencesWindowBackend() {
    return &kGtkBackend;
}

GtkBuilder* preferencesBuilder() {
    return ui.window ? ui.builder : nullptr;
}
