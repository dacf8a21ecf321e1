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

// The filter at `p`, which has at least kShortestKeyText bytes.
inline bool mayStartKeyText(const char* p) {
    if (p[0] != '<') return false;
    switch (p[1]) {
    case 'd':
    case 'a':
        return true;
    case '/':
        return p[2] == 'd' || p[2] == 'a';
    case 'k':
    case 'K':
        return p[5] == 'T' || p[5] == 'A' || p[5] == 'G' || p[5] == 'n' || p[5] == 'N';
    default:
        return false;
    }
}

#if defined(__SSE2__)
constexpr size_t kKeyTextBlock = 16;
// Bytes one block of the filter reads.
constexpr size_t kKeyTextReach = kKeyTextBlock + kShortestKeyText - 1;

// The filter for the sixteen positions from `p`, as a bit mask; reads the
// kKeyTextReach bytes from `p` on.
inline __attribute__((always_inline)) unsigned keyTextStarts(const char* p) {
    auto load = [p](size_t from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + from));
    };
    auto is = [](__m128i block, char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
    __m128i b0 = load(0), b1 = load(1), b2 = load(2), b5 = load(5);
    __m128i named = _mm_or_si128(_mm_or_si128(is(b5, 'T'), is(b5, 'A')),
                                 _mm_or_si128(_mm_or_si128(is(b5, 'G'), is(b5, 'n')), is(b5, 'N')));
    __m128i key = _mm_and_si128(_mm_or_si128(is(b1, 'k'), is(b1, 'K')), named);
    __m128i closing = _mm_and_si128(is(b1, '/'), _mm_or_si128(is(b2, 'd'), is(b2, 'a')));
    __m128i opening = _mm_or_si128(is(b1, 'd'), is(b1, 'a'));
    __m128i starts = _mm_and_si128(is(b0, '<'), _mm_or_si128(_mm_or_si128(key, closing), opening));
    return static_cast<unsigned>(_mm_movemask_epi8(starts));
}
#endif

// Calls `take` with every position of `text` where a key text may start and
// fit, in order; stops early when `take` returns false. Never reads past
// `text`.
template <typename Take> void forEachKeyTextStart(std::string_view text, Take take) {
    if (text.size() < kShortestKeyText) return;
    const char* data = text.data();
    size_t last = text.size() - kShortestKeyText; // last position a key text fits
    size_t at = 0;
#if defined(__SSE2__)
    if (text.size() >= kKeyTextReach) {
        for (; at + kKeyTextReach <= text.size(); at += kKeyTextBlock)
            for (unsigned bits = keyTextStarts(data + at); bits; bits &= bits - 1)
                if (!take(at + static_cast<size_t>(__builtin_ctz(bits)))) return;
        if (at <= last) {
            // The rest: one more block ending at the end of the text,
            // overlapping positions already done (masked off), so nothing is
            // copied and nothing past the text is read.
            size_t from = text.size() - kKeyTextReach;
            unsigned bits = keyTextStarts(data + from) & ~((1u << (at - from)) - 1);
            for (; bits; bits &= bits - 1)
                if (!take(from + static_cast<size_t>(__builtin_ctz(bits)))) return;
        }
        return;
    }
#endif
    for (; at <= last; ++at)
        if (mayStartKeyText(data + at) && !take(at)) return;
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
