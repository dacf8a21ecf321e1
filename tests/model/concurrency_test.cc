// Several threads using the store and the lists at once. The assertions
// check the end state; the ThreadSanitizer build (make check-tsan) checks
// that no access races.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "model/library_lists.h"
#include "model/linked.h"
#include "model/list_generations.h"
#include "model/protected_data.h"

namespace {

TEST(Concurrency, StoreWritersAndReadersAgree) {
    ProtectedData d;
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 2000; ++i) {
                d.setCurCity(t % 2 ? "Boston" : "Chicago");
                d.incUpdatingProgress(0.01);
                d.addLetterCurCityDisplay('x');
                d.removeLetterCurCityDisplay();
                d.setForceUpdate(i % 2);
            }
        });
    }
    std::thread reader([&] {
        char city[256];
        while (!stop.load()) {
            d.getCurCity(city);
            std::string c(city);
            EXPECT_TRUE(c == "-" || c == "Boston" || c == "Chicago") << c;
            EXPECT_LE(d.getUpdatingProgress(), 100.0);
        }
    });
    for (auto& t : threads) t.join();
    stop = true;
    reader.join();
    EXPECT_NEAR(d.getUpdatingProgress(), 60.0, 1e-6);
}

TEST(Concurrency, FiltersChangeWhileShowsAreFiltered) {
    ProtectedData d;
    SHOWLIST list;
    for (int day = 1; day <= 20; ++day) {
        SHOWENTRY* e = new SHOWENTRY;
        snprintf(e->artist, sizeof e->artist, "Band %d", day);
        e->day = day;
        e->tags->add(new FRIENDNAME(day % 2 ? "Live" : "Import"));
        ASSERT_TRUE(list.addShow(e, nullptr));
    }
    std::thread toggler([&] {
        for (int i = 0; i < 500; ++i) {
            d.addFormatFilter("Live");
            d.removeFormatFilter("Live");
        }
    });
    std::thread counter([&] {
        for (int i = 0; i < 500; ++i) {
            list.lock();
            uint32_t n = list.filteredSize(&d);
            list.unlock();
            // Each show is tested on its own, so a filter switched mid-count
            // gives a total in between.
            EXPECT_GE(n, 10u);
            EXPECT_LE(n, 20u);
            char filters[ProtectedData::FilterStringSize];
            d.getFilterString(filters);
        }
    });
    toggler.join();
    counter.join();
    deleteShows(&list);
}

TEST(Concurrency, ShowsFiledFromManyThreadsStayOrdered) {
    ShowListGenerations lists;
    ShowListRef list = lists.current();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 200; ++i) {
                SHOWENTRY* e = new SHOWENTRY;
                snprintf(e->artist, sizeof e->artist, "Artist %d", i % 50);
                e->month = 1 + (i * 7 + t) % 12;
                e->day = 1 + i % 28;
                e->tags->add(new FRIENDNAME(t % 2 ? "a" : "b"));
                if (!list->addShow(e, lists.previous().get())) delete e;
            }
        });
    }
    std::thread walker([&] {
        for (int i = 0; i < 200; ++i) {
            list->lock();
            for (SHOWENTRY* e = list->head; e && e->next; e = e->next)
                EXPECT_LE(e->month * 100 + e->day, e->next->month * 100 + e->next->day);
            list->unlock();
            list->findShow("artist 7");
        }
    });
    for (auto& t : threads) t.join();
    walker.join();
    uint32_t n = 0;
    for (SHOWENTRY* e = list->head; e; e = e->next) ++n;
    EXPECT_EQ(n, list->size());
}

TEST(Concurrency, LibraryListsFromManyThreads) {
    XML_Artist_List artists;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 300; ++i) {
                XMLARTIST* a = new XMLARTIST(("artist " + std::to_string(i)).c_str());
                if (!artists.addUncleaned(a)) delete a;
            }
        });
    }
    for (auto& t : threads) t.join();
    EXPECT_EQ(artists.count, 300u);
    deleteNodes(artists);
}

} // namespace
