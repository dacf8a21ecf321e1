// The indexed ordered inserts (SHOWLIST::addShow, the library name lists)
// against the walks they replace, kept here as the reference: the same
// shuffled input goes through both, and the lists must agree entry by entry.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "model/artist_key.h"
#include "model/fixed_text.h"
#include "model/library_lists.h"
#include "model/linked.h"
#include "model/show_list.h"

namespace {

std::string keyOf(const char* name) {
    char key[kArtistKeySize];
    copyText(key, name);
    cleanArtist(key);
    return key;
}

bool sameDate(const SHOWENTRY* a, const SHOWENTRY* b) {
    return a->year == b->year && a->month == b->month && a->day == b->day;
}

bool laterThan(const SHOWENTRY* a, const SHOWENTRY* b) {
    if (a->year != b->year) return a->year > b->year;
    if (a->month != b->month) return a->month > b->month;
    return a->day > b->day;
}

// Filing as a walk: the mark of the first same show in `previous`, then the
// first same show of `list` takes the tags, or the first later entry gets
// the new one before it.
bool walkAddShow(SHOWLIST& list, SHOWENTRY* entry, SHOWLIST& previous) {
    std::string key = keyOf(entry->artist);
    for (SHOWENTRY* p = previous.head; p; p = p->next)
        if (sameDate(p, entry) && keyOf(p->artist) == key) {
            entry->attending = p->attending;
            break;
        }
    for (SHOWENTRY* e = list.head; e; e = e->next) {
        if (sameDate(e, entry) && keyOf(e->artist) == key) {
            e->tags->combine(entry->tags);
            return false;
        }
        if (laterThan(e, entry)) {
            insertBefore(list, e, entry);
            return true;
        }
    }
    appendNode(list, entry);
    return true;
}

// Spellings of a few artists that clean to the same key, so duplicates come
// in several forms.
std::string artistSpelling(std::mt19937& random, int artists) {
    int n = static_cast<int>(random() % artists);
    switch (random() % 4) {
    case 0: return "The Band " + std::to_string(n);
    case 1: return "band " + std::to_string(n);
    case 2: return "Band-" + std::to_string(n) + "!";
    default: return "A Band and " + std::to_string(n);
    }
}

SHOWENTRY* randomShow(std::mt19937& random) {
    auto* e = new SHOWENTRY;
    copyText(e->artist, artistSpelling(random, 60).c_str());
    e->year = 2026 + static_cast<int>(random() % 3);
    e->month = static_cast<int>(random() % 13); // 0: a date a site wrote badly
    e->day = static_cast<int>(random() % 6);
    snprintf(e->venue, sizeof e->venue, "Venue %u", static_cast<unsigned>(random() % 1000));
    const char* friends[] = {"ann", "Ann", "bob", "cy"};
    for (int t = static_cast<int>(random() % 3); t > 0; --t) {
        auto* name = new FRIENDNAME(friends[random() % 4]);
        if (!e->tags->add(name)) delete name; // a case-blind duplicate stays ours
    }
    return e;
}

std::vector<std::string> describe(const SHOWLIST& list) {
    std::vector<std::string> lines;
    const SHOWENTRY* last = nullptr;
    for (const SHOWENTRY* e = list.head; e; last = e, e = e->next) {
        EXPECT_EQ(e->prev, last) << "links";
        std::string line = std::string(e->artist) + "|" + e->venue + "|" + std::to_string(e->year) +
                           "-" + std::to_string(e->month) + "-" + std::to_string(e->day) +
                           (e->attending ? "|marked" : "|") + "|";
        for (const FRIENDNAME* f = e->tags->head; f; f = f->next) line += std::string(f->name) + ",";
        lines.push_back(line);
    }
    EXPECT_EQ(list.tail, last);
    EXPECT_EQ(list.count, lines.size());
    return lines;
}

// Files the same shuffled shows into `walked` by the walk and into `indexed`
// by addShow, each against its own previous generation.
void fileBoth(std::mt19937& random, int shows, SHOWLIST& walked, SHOWLIST& walkedPrevious,
              SHOWLIST& indexed, SHOWLIST& indexedPrevious) {
    for (int i = 0; i < shows; ++i) {
        std::mt19937 copy = random;
        SHOWENTRY* a = randomShow(random);
        SHOWENTRY* b = randomShow(copy);
        if (!walkAddShow(walked, a, walkedPrevious)) delete a;
        if (!indexed.addShow(b, &indexedPrevious)) delete b;
    }
}

TEST(OrderedInsert, AddShowFilesLikeTheWalk) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        SHOWLIST walkedOld, indexedOld, walked, indexed, none;
        int shows = 50 + static_cast<int>(random() % 400);
        fileBoth(random, shows, walkedOld, none, indexedOld, none);
        // The user marks some shows, then the next update files again.
        for (SHOWENTRY *a = walkedOld.head, *b = indexedOld.head; a && b; a = a->next, b = b->next)
            a->attending = b->attending = random() % 3 == 0;
        fileBoth(random, shows, walked, walkedOld, indexed, indexedOld);
        ASSERT_EQ(describe(walkedOld), describe(indexedOld)) << "seed " << seed;
        ASSERT_EQ(describe(walked), describe(indexed)) << "seed " << seed;
        for (SHOWLIST* list : {&walkedOld, &indexedOld, &walked, &indexed}) deleteShows(list);
    }
}

// The name lists' walk: equal text refuses, the first greater gets it before.
template <typename List, typename Node> bool walkAdd(List& list, Node* node, bool keys) {
    auto text = [keys](const char* name) { return keys ? keyOf(name) : std::string(name); };
    for (Node* n = list.head; n; n = n->next) {
        int c = text(n->name).compare(text(node->name));
        if (c == 0) return false;
        if (c > 0) {
            insertBefore(list, n, node);
            return true;
        }
    }
    appendNode(list, node);
    return true;
}

template <typename List> std::vector<std::string> names(const List& list) {
    std::vector<std::string> all;
    for (auto* n = list.head; n; n = n->next) all.push_back(n->name);
    EXPECT_EQ(list.count, all.size());
    return all;
}

TEST(OrderedInsert, NameListsSortLikeTheWalk) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        XML_Artist_List walked, indexed;
        XML_Album_List walkedAlbums, indexedAlbums;
        // Mostly one order per list, as the scan and the phone sync use
        // them; now and then the other order, a removal or an emptying.
        bool keys = seed % 2 == 0;
        for (int i = 0; i < 600; ++i) {
            std::string name = artistSpelling(random, 150);
            unsigned op = random() % 100;
            if (op < 2) {
                deleteNodes(walked);
                deleteNodes(indexed);
                continue;
            }
            if (op < 10) {
                std::string key = keyOf(name.c_str());
                XMLARTIST* a = [&] {
                    std::lock_guard<std::mutex> guard(walked.mutex);
                    return unlinkNamed(walked, key.c_str());
                }();
                XMLARTIST* b = indexed.remove(key.c_str());
                ASSERT_EQ(a == nullptr, b == nullptr);
                delete a;
                delete b;
                continue;
            }
            bool uncleaned = op < 14 ? !keys : keys;
            if (op >= 14 && op % 3 == 0) name = keyOf(name.c_str()); // stored keys, as the scan has
            auto* a = new XMLARTIST(name.c_str());
            auto* b = new XMLARTIST(name.c_str());
            bool linkedA = walkAdd(walked, a, uncleaned);
            bool linkedB = uncleaned ? indexed.addUncleaned(b) : indexed.add(b);
            ASSERT_EQ(linkedA, linkedB) << "seed " << seed << " step " << i;
            if (!linkedA) delete a;
            if (!linkedB) delete b;

            auto* c = new XMLALBUM(name.c_str());
            auto* d = new XMLALBUM(name.c_str());
            if (!walkAdd(walkedAlbums, c, false)) delete c;
            if (!indexedAlbums.add(d)) delete d;
        }
        ASSERT_EQ(names(walked), names(indexed)) << "seed " << seed;
        ASSERT_EQ(names(walkedAlbums), names(indexedAlbums)) << "seed " << seed;
        deleteNodes(walked);
        deleteNodes(indexed);
        deleteNodes(walkedAlbums);
        deleteNodes(indexedAlbums);
    }
}

} // namespace
