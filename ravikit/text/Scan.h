#pragma once

#include "ravikit/text/Chars.h"
#include "ravikit/xml/NameTable.h"

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Finding the next unit that matters, sixteen units a step where the machine can.
///
/// A condition says of one unit whether to stop there, and the same of sixteen units at once. For
/// that the units are narrowed to bytes: one of 0x100 and up becomes 0xFF, one of 0x8000 and up
/// becomes 0. So a condition must hold for all controls and for all units from 0x8000 on, among
/// which are those that are no characters; whoever stops there looks closer.
namespace ravikit::scan {

inline constexpr std::ptrdiff_t stride = 16; ///< units a step

#if defined(__SSE2__)
using Bytes = __m128i; ///< sixteen units as bytes, or the answer for each: all ones or all zeros

inline Bytes narrowed(const char16_t* at) {
    const auto* const units = reinterpret_cast<const __m128i*>(at);
    return _mm_packus_epi16(_mm_loadu_si128(units), _mm_loadu_si128(units + 1));
}
inline Bytes equals(Bytes bytes, char16_t c) {
    return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(c)));
}
inline Bytes upTo(Bytes bytes, char c) {
    return _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(c)), bytes);
}
inline Bytes either(Bytes a, Bytes b) {
    return _mm_or_si128(a, b);
}
inline Bytes both(Bytes a, char16_t b) {
    return _mm_and_si128(a, _mm_set1_epi8(static_cast<char>(b)));
}
inline Bytes differing(Bytes a, Bytes b) {
    return _mm_xor_si128(a, b);
}
/// Writes sixteen bytes as units.
inline void widen(Bytes bytes, char16_t* to) {
    auto* const units = reinterpret_cast<__m128i*>(to);
    _mm_storeu_si128(units, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
    _mm_storeu_si128(units + 1, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
}
inline unsigned maskOf(Bytes answers) {
    return static_cast<unsigned>(_mm_movemask_epi8(answers));
}
#endif

/// A control, a blank other than the space among them, or a unit that may be no character by
/// itself.
inline bool needsLook(char16_t c) {
    return c < 0x20 || c >= 0x8000;
}

struct Control {
    bool operator()(char16_t c) const { return needsLook(c); }
#if defined(__SSE2__)
    Bytes operator()(Bytes b) const {
        return upTo(b, 0x1F);
    }
#endif
};

/// What character data stops at.
struct TextStop {
    bool operator()(char16_t c) const {
        return c == u'<' || c == u'&' || c == u']' || needsLook(c);
    }
#if defined(__SSE2__)
    Bytes operator()(Bytes b) const {
        return either(either(equals(b, u'<'), equals(b, u'&')),
                      either(equals(b, u']'), upTo(b, 0x1F)));
    }
#endif
};

/// What an attribute's value stops at.
struct ValueStop {
    char16_t quote;
    bool operator()(char16_t c) const {
        return c == quote || c == u'<' || c == u'&' || needsLook(c);
    }
#if defined(__SSE2__)
    Bytes operator()(Bytes b) const {
        return either(either(equals(b, u'<'), equals(b, u'&')),
                      either(equals(b, quote), upTo(b, 0x1F)));
    }
#endif
};

/// The first unit of [at, end) that `stop` holds for, or `end`.
template <class Stop>
inline const char16_t* find(const char16_t* at, const char16_t* end, const Stop& stop) {
#if defined(__SSE2__)
    const bool isLong = end - at >= stride;
    for (; end - at >= stride; at += stride) {
        if (const unsigned mask = maskOf(stop(narrowed(at))); mask != 0) {
            return at + __builtin_ctz(mask);
        }
    }
    if (isLong && at != end) { // the rest, along with units that were looked at already
        const unsigned mask = maskOf(stop(narrowed(end - stride))) >> (stride - (end - at));
        return mask != 0 ? at + __builtin_ctz(mask) : end;
    }
#endif
    while (at != end && !stop(*at)) {
        ++at;
    }
    return at;
}

inline const char16_t* skipBlanks(const char16_t* at, const char16_t* end) {
    while (at != end && isBlank(*at)) {
        ++at;
    }
    return at;
}

/// The same where many are to be expected, as in indentation.
inline const char16_t* skipManyBlanks(const char16_t* at, const char16_t* end) {
#if defined(__SSE2__)
    for (; end - at >= stride; at += stride) {
        const Bytes b = narrowed(at);
        const unsigned mask = maskOf(either(either(equals(b, u' '), equals(b, u'\n')),
                                            either(equals(b, u'\t'), equals(b, u'\r'))));
        if (mask != 0xFFFF) {
            return at + __builtin_ctz(~mask);
        }
    }
#endif
    return skipBlanks(at, end);
}

/// A name of ASCII characters that is short enough to be its own key.
struct ShortName {
    std::uint32_t length = 0; ///< 0 if the name at hand is another
    NameKey key;
};

/// Reads such a name; where the text nears its end it may say that there is none.
inline ShortName shortName(const char16_t* at, const char16_t* end) {
#if defined(__SSE2__)
    if (end - at <= stride) {
        return {};
    }
    const Bytes bytes = narrowed(at);
    const auto within = [](Bytes b, char first, char last) {
        return upTo(_mm_sub_epi8(b, _mm_set1_epi8(first)), static_cast<char>(last - first));
    };
    const Bytes letters = within(either(bytes, _mm_set1_epi8(0x20)), 'a', 'z');
    const Bytes others = _mm_andnot_si128(equals(bytes, u'/'), within(bytes, '-', ':'));
    const unsigned mask = maskOf(either(either(letters, others), equals(bytes, u'_')));
    const auto length = static_cast<std::uint32_t>(__builtin_ctz(~mask));
    if (length == stride || at[length] >= 0x80) {
        return {};
    }
    alignas(16) static constexpr unsigned char keep[32] = {
        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0,    0,    0,    0,    0,    0,
        0,    0,    0,    0,    0,    0,    0,    0,    0,    0};
    const Bytes kept = _mm_and_si128(
        bytes, _mm_loadu_si128(reinterpret_cast<const __m128i*>(keep + stride - length)));
    return {length,
            {static_cast<std::uint64_t>(_mm_cvtsi128_si64(kept)),
             static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(kept, kept)))}};
#else
    static_cast<void>(at);
    static_cast<void>(end);
    return {};
#endif
}

/// Whether `length` units are the same here and there. `end` ends both texts.
inline bool sameUnits(const char16_t* here, const char16_t* there, std::uint32_t length,
                      const char16_t* end) {
#if defined(__SSE2__)
    if (length <= 8 && end - here >= 8 && end - there >= 8) {
        const Bytes same =
            _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(here)),
                            _mm_loadu_si128(reinterpret_cast<const __m128i*>(there)));
        return ((~maskOf(same)) & ((1U << (2 * length)) - 1)) == 0;
    }
#endif
    return std::u16string_view(here, length) == std::u16string_view(there, length);
}

} // namespace ravikit::scan
