// Show lists for view tests and benchmarks: single shows by hand, and a busy
// generated list (many shows, one crowded month, tags, tickets, marks) built
// the same way each time.
#pragma once

#include <cstdio>
#include <initializer_list>

#include "model/list_generations.h"
#include "model/show_list.h"

// A new show, not yet in a list.
inline SHOWENTRY* makeDemoShow(const char* artist, int year, int month, int day,
                               std::initializer_list<const char*> tags = {}) {
    auto* e = new SHOWENTRY;
    snprintf(e->artist, sizeof e->artist, "%s", artist);
    snprintf(e->venue, sizeof e->venue, "The Venue");
    snprintf(e->location, sizeof e->location, "Springfield, IL");
    e->year = year;
    e->month = month;
    e->day = day;
    for (const char* t : tags)
        e->tags->add(new FRIENDNAME(t));
    return e;
}

// Files `e` in `list`, as the update thread does once an entry is complete;
// returns it, or null when it merged with a show already there.
inline SHOWENTRY* fileDemoShow(SHOWLIST* list, SHOWENTRY* e) {
    SHOWLIST previous;
    if (!list->addShow(e, &previous)) {
        delete e;
        return nullptr;
    }
    return e;
}

inline SHOWENTRY* addDemoShow(SHOWLIST* list, const char* artist, int year, int month, int day,
                              std::initializer_list<const char*> tags = {}) {
    return fileDemoShow(list, makeDemoShow(artist, year, month, day, tags));
}

// `count` shows from (year, month) on: a third of them in that first month
// (several a day), the rest spread over the following months. Every fifth
// sells tickets, every seventh is marked, every third has friends or formats.
inline void fillDemoShows(SHOWLIST* list, int count, int year, int month) {
    static const char* const kArtists[] = {"The Decemberists",    "Neko Case",    "Sufjan Stevens",
                                           "Arcade Fire",         "Bon Iver",     "Fleet Foxes",
                                           "Iron & Wine",         "Spoon",        "Wilco",
                                           "Yo La Tengo",         "Beirut",       "Modest Mouse",
                                           "Death Cab for Cutie", "The National", "Grizzly Bear"};
    const int busy = count / 3;
    for (int i = 0; i < count; ++i) {
        char artist[256];
        snprintf(artist, sizeof artist, "%s %d", kArtists[i % 15], i);
        int y = year, m = month, d;
        if (i < busy) {
            d = 1 + (i * 11) % 28; // about four shows a day
        } else {
            int k = i - busy;
            m = month + 1 + k / 20;
            y += (m - 1) / 12;
            m = (m - 1) % 12 + 1;
            d = 1 + (k * 3) % 28;
        }
        SHOWENTRY* e = makeDemoShow(artist, y, m, d);
        e->ticketsAvailable = i % 5 == 0;
        e->attending = i % 7 == 0;
        if (i % 3 == 0) {
            e->tags->add(new FRIENDNAME("alice"));
            e->tags->add(new FRIENDNAME("bob"));
        }
        if (i % 4 == 0) snprintf(e->otherArtists, sizeof e->otherArtists, "Opening Act %d", i);
        snprintf(e->url, sizeof e->url, "http://127.0.0.1/show?%d", i);
        fileDemoShow(list, e);
    }
}
