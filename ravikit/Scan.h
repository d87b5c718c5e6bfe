#pragma once

#include "ravikit/Chars.h"
#include "ravikit/NameTable.h"

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Finding the next unit that matters, eight units a step where the machine can.
///
/// Each condition says of one unit whether to stop there, and the same of eight units at once.
namespace ravikit::scan {

#if defined(__SSE2__)
using Units = __m128i; ///< eight UTF-16 units, or the answer for each: all ones or all zeros

inline Units equals(Units units, char16_t c) {
    return _mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(c)));
}
inline Units upTo(Units units, char16_t c) {
    return _mm_cmpeq_epi16(_mm_subs_epu16(units, _mm_set1_epi16(static_cast<short>(c))),
                           _mm_setzero_si128());
}
inline Units either(Units a, Units b) {
    return _mm_or_si128(a, b);
}
inline Units but(Units a, Units b) {
    return _mm_andnot_si128(b, a);
}
inline Units blanks(Units units) {
    return either(either(equals(units, u' '), equals(units, u'\n')),
                  either(equals(units, u'\t'), equals(units, u'\r')));
}
inline Units all() {
    return _mm_set1_epi16(-1);
}
#endif

/// A unit that may not be a Char by itself: a control, a surrogate, or one above.
inline bool isUnusual(char16_t c) {
    return (c < 0x20 && !isBlank(c)) || c >= 0xD800;
}

struct Unusual {
    bool operator()(char16_t c) const { return isUnusual(c); }
#if defined(__SSE2__)
    Units operator()(Units u) const {
        return either(but(upTo(u, 0x1F), blanks(u)), but(all(), upTo(u, 0xD7FF)));
    }
#endif
};

/// What character data stops at.
struct TextStop {
    bool operator()(char16_t c) const {
        return c == u'<' || c == u'&' || c == u']' || isUnusual(c);
    }
#if defined(__SSE2__)
    Units operator()(Units u) const {
        return either(either(equals(u, u'<'), equals(u, u'&')),
                      either(equals(u, u']'), Unusual()(u)));
    }
#endif
};

/// What an attribute's value stops at; of the blanks only the space is plain there.
struct ValueStop {
    char16_t quote;
    bool operator()(char16_t c) const {
        return c == quote || c == u'<' || c == u'&' || c < 0x20 || c >= 0xD800;
    }
#if defined(__SSE2__)
    Units operator()(Units u) const {
        return either(either(equals(u, quote), either(equals(u, u'<'), equals(u, u'&'))),
                      either(upTo(u, 0x1F), but(all(), upTo(u, 0xD7FF))));
    }
#endif
};

struct NoBlank {
    bool operator()(char16_t c) const { return !isBlank(c); }
#if defined(__SSE2__)
    Units operator()(Units u) const {
        return but(all(), blanks(u));
    }
#endif
};

/// The first unit of [at, end) that `stop` holds for, or `end`.
template <class Stop>
const char16_t* find(const char16_t* at, const char16_t* end, const Stop& stop) {
#if defined(__SSE2__)
    for (; end - at >= 8; at += 8) {
        const Units units = _mm_loadu_si128(reinterpret_cast<const Units*>(at));
        const auto mask = static_cast<unsigned>(_mm_movemask_epi8(stop(units)));
        if (mask != 0) {
            return at + (__builtin_ctz(mask) >> 1);
        }
    }
#endif
    while (at != end && !stop(*at)) {
        ++at;
    }
    return at;
}

inline const char16_t* skipBlanks(const char16_t* at, const char16_t* end) {
    // Most often there is none, or one.
    for (int i = 0; i < 2; ++i, ++at) {
        if (at == end || !isBlank(*at)) {
            return at;
        }
    }
    return find(at, end, NoBlank());
}

/// The ASCII name characters from `at` on: how many, and their key. `isWhole` is false if the name
/// may go on behind them or does not fit in a key; then it is to be read in another way.
struct ShortName {
    std::uint32_t length = 0;
    bool isWhole = false;
    NameKey key;
};

inline ShortName shortName(const char16_t* at, const char16_t* end) {
    ShortName name;
#if defined(__SSE2__)
    if (end - at > NameKey::shortLength) {
        const __m128i bytes =
            _mm_packus_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)),
                             _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 8)));
        const auto within = [bytes](char bit, char first, char count) {
            const __m128i offset =
                _mm_sub_epi8(_mm_or_si128(bytes, _mm_set1_epi8(bit)), _mm_set1_epi8(first));
            return _mm_cmpeq_epi8(_mm_min_epu8(offset, _mm_set1_epi8(count)), offset);
        };
        const __m128i letters = within(0x20, 'a', 25);
        const __m128i digits = within(0, '-', 13); // - . / 0 to 9 :
        const __m128i slash = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('/'));
        const __m128i line = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('_'));
        const __m128i good = either(either(letters, line), but(digits, slash));
        const auto mask = static_cast<unsigned>(_mm_movemask_epi8(good));
        name.length = static_cast<std::uint32_t>(__builtin_ctz(~mask));
        alignas(16) static constexpr unsigned char keep[32] = {
            0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
            0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0,    0,    0,    0,    0,    0,
            0,    0,    0,    0,    0,    0,    0,    0,    0,    0};
        const __m128i kept = _mm_and_si128(
            bytes, _mm_loadu_si128(reinterpret_cast<const __m128i*>(keep + 16 - name.length)));
        name.key.low = static_cast<std::uint64_t>(_mm_cvtsi128_si64(kept));
        name.key.high =
            static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(kept, kept)));
        name.isWhole = name.length < NameKey::shortLength && at[name.length] < 0x80;
        return name;
    }
#endif
    for (; at + name.length != end && name.length < NameKey::shortLength; ++name.length) {
        const char16_t c = at[name.length];
        if (c >= 0x80 || !isNameChar(c)) {
            break;
        }
        (name.length < 8 ? name.key.low : name.key.high) |= std::uint64_t{c}
                                                            << (name.length % 8 * 8);
    }
    name.isWhole =
        name.length < NameKey::shortLength && (at + name.length == end || at[name.length] < 0x80);
    return name;
}

} // namespace ravikit::scan
