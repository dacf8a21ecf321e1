#include "model/kept_shows.h"

#include <cstring>
#include <mutex>
#include <vector>

#include "model/fixed_text.h"

SHOWENTRY* copyShow(const SHOWENTRY& show) {
    auto* copy = new SHOWENTRY;
    copyText(copy->artist, show.artist);
    copyText(copy->venue, show.venue);
    copyText(copy->location, show.location);
    copy->day = show.day;
    copy->month = show.month;
    copy->year = show.year;
    copyText(copy->otherArtists, show.otherArtists);
    copyText(copy->url, show.url);
    copy->recentlyAdded = show.recentlyAdded;
    copy->attending = show.attending;
    copy->tags->combine(show.tags);
    copy->ticketsAvailable = show.ticketsAvailable;
    copyText(copy->source, show.source);
    return copy;
}

int keepShows(SHOWLIST* into, SHOWLIST* from, const std::function<bool(const SHOWENTRY&)>& keep) {
    if (!into || !from) return 0;
    // Copied under `from`'s lock and filed after it, so that the two list
    // locks are never held together.
    std::vector<SHOWENTRY*> copies;
    {
        std::lock_guard<std::mutex> guard(from->mutex);
        for (SHOWENTRY* show = from->head; show; show = show->next) {
            if (keep(*show)) copies.push_back(copyShow(*show));
        }
    }
    for (SHOWENTRY* copy : copies) {
        if (!into->addShow(copy, from)) delete copy;
    }
    return static_cast<int>(copies.size());
}
