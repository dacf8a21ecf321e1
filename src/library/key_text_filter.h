// The filter in front of the library scan's key texts: where, on a line or
// in a stretch of the file, may one of them start? Every key text is "<d",
// "<a", "</d", "</a", or "<key>" followed by T, A, G or a name (compared
// without case), so a look at three bytes after each "<" lets through all
// of them and little else; the scan then compares the whole texts. Nearly
// every line of a library holds several "<", but few pass, which is what
// keeps the scan near the speed of reading the file.
//
// Threads: plain functions.
#pragma once

#include <cstddef>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Shortest key text: "<dict>". A "<" closer than this to the end of its text
// starts nothing the scan looks for.
constexpr size_t kShortestKeyText = 6;
// Shortest text starting "<key>" (the album and genre keys with "<string>").
constexpr size_t kShortestKeyLine = 24;
// The playlist name's text, "<key>name</key><string>stagebeacon</string>".
constexpr size_t kPlaylistNameText = 43;

// The filter at `p`, followed by `room` bytes (`p` included). It looks at
// the bytes that tell the key texts from their neighbours: "<dict>" from
// "<date>", "Artist" from "Album Artist", "Track ID" from "Track Number",
// and for the playlist's name the "t" of "stagebeacon".
inline bool mayStartKeyText(const char* p, size_t room) {
    if (room < kShortestKeyText || p[0] != '<') return false;
    switch (p[1]) {
    case 'd':
        return p[2] == 'i';
    case 'a':
        return p[2] == 'r';
    case '/':
        return (p[2] == 'd' && p[3] == 'i') || (p[2] == 'a' && p[3] == 'r');
    case 'k':
    case 'K':
        break;
    default:
        return false;
    }
    if (room < kShortestKeyLine) return false;
    char name = p[5];
    if ((name == 'n' || name == 'N') && room >= kPlaylistNameText)
        return p[24] == 't' || p[24] == 'T';
    if (p[1] != 'k') return false;
    switch (name) {
    case 'T':
        return p[11] == 'I';
    case 'A':
        return (p[6] == 'r' && p[11] == '<') || (p[6] == 'l' && p[10] == '<') || p[6] == 'p';
    case 'G':
        return p[6] == 'e';
    default:
        return false;
    }
}

#if defined(__SSE2__)
constexpr size_t kKeyTextBlock = 16;
// Bytes one block of the filter reads: the furthest byte it looks at is 24
// after a position.
constexpr size_t kKeyTextReach = kKeyTextBlock + 24;

// The filter for the sixteen positions from `p`, as a bit mask, for
// positions with the whole of kKeyTextReach bytes readable from `p`. A
// position near the end of its text may pass here where mayStartKeyText
// (which knows the room left) would not; the scan's full comparison settles it.
inline __attribute__((always_inline)) unsigned keyTextStarts(const char* p) {
    auto load = [p](size_t from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + from));
    };
    auto is = [](__m128i block, char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
    auto both = [](__m128i a, __m128i b) { return _mm_and_si128(a, b); };
    auto either = [](__m128i a, __m128i b) { return _mm_or_si128(a, b); };
    __m128i b0 = load(0), b1 = load(1), b2 = load(2);
    // First the cheap part: "<" and the next one or two bytes. Most blocks
    // hold no such start (closing tags of keys and values do not count) and
    // end here.
    __m128i slash = both(is(b1, '/'), either(is(b2, 'd'), is(b2, 'a')));
    __m128i lead = both(is(b0, '<'), either(either(either(is(b1, 'k'), is(b1, 'K')), slash),
                                            either(is(b1, 'd'), is(b1, 'a'))));
    if (_mm_movemask_epi8(lead) == 0) return 0;
    __m128i b3 = load(3), b5 = load(5), b6 = load(6);
    __m128i b10 = load(10), b11 = load(11), b24 = load(24);
    __m128i tags = either(either(both(is(b1, 'd'), is(b2, 'i')), both(is(b1, 'a'), is(b2, 'r'))),
                          both(slash, either(both(is(b2, 'd'), is(b3, 'i')),
                                             both(is(b2, 'a'), is(b3, 'r')))));
    __m128i albumOrArtist = either(either(both(is(b6, 'r'), is(b11, '<')),
                                          both(is(b6, 'l'), is(b10, '<'))),
                                   is(b6, 'p'));
    __m128i keys = both(is(b1, 'k'), either(either(both(is(b5, 'T'), is(b11, 'I')),
                                                   both(is(b5, 'A'), albumOrArtist)),
                                            both(is(b5, 'G'), is(b6, 'e'))));
    __m128i name = both(either(is(b1, 'k'), is(b1, 'K')),
                        both(either(is(b5, 'n'), is(b5, 'N')), either(is(b24, 't'), is(b24, 'T'))));
    __m128i starts = both(lead, either(tags, either(keys, name)));
    return static_cast<unsigned>(_mm_movemask_epi8(starts));
}
#endif

// Calls `take` with every position of `text` where a key text may start and
// fit, in order; stops early when `take` returns false. Never reads past
// `text`.
template <typename Take> void forEachKeyTextStart(std::string_view text, Take take) {
    const char* data = text.data();
    size_t size = text.size();
    size_t at = 0;
#if defined(__SSE2__)
    for (; at + kKeyTextReach <= size; at += kKeyTextBlock)
        for (unsigned bits = keyTextStarts(data + at); bits; bits &= bits - 1)
            if (!take(at + static_cast<size_t>(__builtin_ctz(bits)))) return;
    if (at > 0) {
        // One more block ending at the end of the text, overlapping
        // positions already done (masked off): nothing copied, nothing past
        // the text read.
        size_t from = size - kKeyTextReach;
        unsigned bits = keyTextStarts(data + from) & ~((1u << (at - from)) - 1);
        for (; bits; bits &= bits - 1)
            if (!take(from + static_cast<size_t>(__builtin_ctz(bits)))) return;
        at = from + kKeyTextBlock;
    }
#endif
    for (; at < size; ++at)
        if (mayStartKeyText(data + at, size - at) && !take(at)) return;
}

// The first position of `text` where a key text may start, or npos.
inline size_t findKeyTextStart(std::string_view text) {
    size_t found = std::string_view::npos;
    forEachKeyTextStart(text, [&found](size_t at) {
        found = at;
        return false;
    });
    return found;
}
