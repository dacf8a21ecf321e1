// The real preferences window under a display (xvfb-run gives one): built
// from the interface file, values typed into its widgets by id, OK clicked,
// the store checked. Skipped when no display can be opened.
#include <gtk/gtk.h>

#include "platform/gtk_backends.h"
#include "prefs/gtk/preferences_window_gtk.h"
#include "prefs_fixture.h"

namespace {

class PrefsGtkTest : public PrefsTest {
  protected:
    void SetUp() override {
        PrefsTest::SetUp();
        if (!gtkDisplayAvailable()) GTEST_SKIP() << "no display";
        setenv("STAGEBEACON_RESOURCES", STAGEBEACON_TEST_RESOURCES, 1);
        setPreferencesWindowBackend(gtkPreferencesWindowBackend());
    }
    void TearDown() override {
        PrefsTest::TearDown();
        setPreferencesWindowBackend(nullptr);
        unsetenv("STAGEBEACON_RESOURCES");
    }

    static GtkWidget* widget(const char* id) {
        return GTK_WIDGET(gtk_builder_get_object(preferencesBuilder(), id));
    }
    static void toggle(const char* id, bool on) {
        gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(widget(id)), on);
    }
};

TEST_F(PrefsGtkTest, WidgetsReachTheStoreOnOk) {
    store().setShareAllShows(true);
    store().addFormatFilter("Import");
    open();
    ASSERT_NE(preferencesBuilder(), nullptr);
    EXPECT_TRUE(gtk_widget_get_visible(widget("Stagebeacon_Preferences")));
    EXPECT_TRUE(
        gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(widget("CID_SHARING_RBTN_shareAll"))));
    EXPECT_FALSE(
        gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(widget("CID_RELEASES_CBOX_imports"))));
    EXPECT_FALSE(gtk_widget_get_sensitive(widget("CID_SHARING_TBOX_userName")));
    EXPECT_FALSE(gtk_widget_get_visible(widget("CID_SHARING_TEXT_lboxHeader")));

    gtk_entry_set_text(GTK_ENTRY(widget("CID_GENERAL_TBOX_libraryPath")), "/gtk/library.xml");
    gtk_text_buffer_set_text(
        gtk_text_view_get_buffer(GTK_TEXT_VIEW(widget("CID_GENERAL_TBOX_excludeArtists"))),
        "Creed\nNickelback", -1);
    toggle("CID_RELEASES_CBOX_live", false);
    toggle("CID_SHARING_CBOX_shareCal", true); // the logic enables the names
    EXPECT_TRUE(gtk_widget_get_sensitive(widget("CID_SHARING_TBOX_userName")));
    toggle("CID_SHARING_RBTN_shareHighlighted", true);
    toggle("CID_SHARING_CBOX_shareCal", false);
    gtk_notebook_set_current_page(GTK_NOTEBOOK(widget("tabs_128")), 2);
    EXPECT_EQ(lastTabIndex, 3);

    gtk_button_clicked(GTK_BUTTON(widget("CID_MAIN_BTTN_ok")));
    EXPECT_EQ(openPreferencesWindow(), nullptr);
    EXPECT_EQ(preferencesBuilder(), nullptr);
    char path[1024];
    store().getiTunes_xml_path(path);
    EXPECT_STREQ(path, "/gtk/library.xml");
    EXPECT_EQ(readText(home.support() + "StagebeaconExcludeBands.txt"), "Creed\nNickelback");
    char filters[ProtectedData::FilterStringSize];
    store().getFilterString(filters);
    EXPECT_STREQ(filters, "Import@@Live@@");
    EXPECT_FALSE(store().getShareAllShows());
    EXPECT_FALSE(store().getSharing());
    EXPECT_EQ(updates(), std::vector<unsigned long>{0xFFFFFFFFul});
}

} // namespace
