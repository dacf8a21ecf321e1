// The artist list sent to the phone service (all_artists): every library
// artist as the user spelled it, cleaned for the request (iPhoneArtistClean)
// rather than reduced to the comparison key, one name per track (a name
// holding a comma is kept whole), with the include and exclude band lists
// applied and the two compilation names removed. Names that meet under the
// artist key are one entry, spelled as first met; the list is ordered by
// the key (XML_Artist_List::addUncleaned).
//
// Threads: the update thread alone rebuilds and walks all_artists
// (iPhoneSync_addAllArtists); nothing else touches it.
#pragma once

#include "model/library_lists.h"

class StagebeaconClass;

extern XML_Artist_List all_artists;

// Cleans a name in place for the request (`name` is a buffer of 256 bytes):
// letters A-Z, a-z, digits and blanks stay, except blanks at the very start;
// the reference "&#38;" becomes "and"; every other byte (accents, a plain
// ampersand, punctuation) goes. The result is cut at 255 characters and
// loses its trailing blanks.
void iPhoneArtistClean(char* name);

// Rebuilds all_artists from the store's library file and band lists. 0, or
// 1 when the library file does not open (the list is then left empty).
int GetFullArtistList(StagebeaconClass* app);
