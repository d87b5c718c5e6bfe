#include "platform/files/TextCodec.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tessaly {

namespace {

constexpr char16_t replacement = 0xFFFD;

/// The characters of the bytes 80 to 9F.
constexpr std::array<char16_t, 32> windows1252Upper = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t windows1252(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? windows1252Upper[byte - 0x80U] : char16_t{byte};
}

/// Copies the ASCII characters from `from` on to `to`, and gives their number.
std::size_t copyAscii(const unsigned char* from, const unsigned char* end, char16_t* to) {
    const unsigned char* at = from;
#if defined(__SSE2__)
    for (; end - at >= 16; at += 16, to += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        if (_mm_movemask_epi8(bytes) != 0) {
            break;
        }
        auto* const units = reinterpret_cast<__m128i*>(to);
        _mm_storeu_si128(units, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
        _mm_storeu_si128(units + 1, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
    }
#endif
    while (end - at >= 8) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, at, sizeof eight);
        if ((eight & 0x8080808080808080U) != 0) {
            break;
        }
        for (std::size_t i = 0; i < 8; ++i) {
            to[i] = at[i];
        }
        at += 8;
        to += 8;
    }
    for (; at != end && *at < 0x80; ++at) {
        *to++ = *at;
    }
    return static_cast<std::size_t>(at - from);
}

/// How the sequence after a lead byte has to look: its length and the bounds of its second byte,
/// which shut out overlong forms, surrogates and values beyond U+10FFFF.
struct Sequence {
    std::size_t length;
    unsigned char lowest;
    unsigned char highest;
};

/// Length 0 for a byte that cannot lead.
Sequence sequenceOf(unsigned char lead) {
    if (lead < 0xC2 || lead > 0xF4) {
        return {0, 0, 0};
    }
    if (lead < 0xE0) {
        return {2, 0x80, 0xBF};
    }
    const auto lowest = static_cast<unsigned char>(lead == 0xE0   ? 0xA0
                                                   : lead == 0xF0 ? 0x90
                                                                  : 0x80);
    const auto highest = static_cast<unsigned char>(lead == 0xED   ? 0x9F
                                                    : lead == 0xF4 ? 0x8F
                                                                   : 0xBF);
    return {lead < 0xF0 ? std::size_t{3} : std::size_t{4}, lowest, highest};
}

/// The code point of the sequence of several bytes at `at`, whose length goes into `length`; none
/// if it is malformed.
std::optional<char32_t> decodeSequence(const unsigned char* at, const unsigned char* end,
                                       std::size_t& length) {
    const Sequence sequence = sequenceOf(*at);
    length = sequence.length;
    if (length == 0 || end - at < static_cast<std::ptrdiff_t>(length) || at[1] < sequence.lowest ||
        at[1] > sequence.highest) {
        return std::nullopt;
    }
    char32_t point = *at & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((at[i] & 0xC0U) != 0x80) {
            return std::nullopt;
        }
        point = point << 6U | (at[i] & 0x3FU);
    }
    return point;
}

char16_t* putUtf16(char32_t point, char16_t* to) {
    if (point >= 0x10000) {
        *to++ = static_cast<char16_t>(0xD7C0 + (point >> 10U));
        *to++ = static_cast<char16_t>(0xDC00 + (point & 0x3FFU));
    } else {
        *to++ = static_cast<char16_t>(point);
    }
    return to;
}

void putUtf8(char32_t point, std::string& to) {
    const auto tail = [&](unsigned shift) {
        to.push_back(static_cast<char>(0x80U | (point >> shift & 0x3FU)));
    };
    if (point < 0x80) {
        to.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        to.push_back(static_cast<char>(0xC0U | point >> 6U));
        tail(0);
    } else if (point < 0x10000) {
        to.push_back(static_cast<char>(0xE0U | point >> 12U));
        tail(6);
        tail(0);
    } else {
        to.push_back(static_cast<char>(0xF0U | point >> 18U));
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace

std::optional<std::u16string> decodeUtf8(std::string_view bytes) {
    std::u16string text(bytes.size(), u'\0'); // no character has more units than bytes
    const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
    const unsigned char* const end = at + bytes.size();
    char16_t* to = text.data();
    while (at != end) {
        const std::size_t ascii = copyAscii(at, end, to);
        at += ascii;
        to += ascii;
        if (at == end) {
            break;
        }
        std::size_t length = 0;
        const auto point = decodeSequence(at, end, length);
        if (!point) {
            return std::nullopt;
        }
        at += length;
        to = putUtf16(*point, to);
    }
    text.resize(static_cast<std::size_t>(to - text.data()));
    return text;
}

NearlyUtf8 decodeNearlyUtf8(std::string_view bytes) {
    NearlyUtf8 result;
    result.text.resize(bytes.size()); // no character has more units than bytes
    char16_t* to = result.text.data();
    const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
    const unsigned char* const end = at + bytes.size();
    while (at != end) {
        const std::size_t ascii = copyAscii(at, end, to);
        at += ascii;
        to += ascii;
        if (at == end) {
            break;
        }
        std::size_t length = 0;
        if (const auto point = decodeSequence(at, end, length)) {
            ++result.sequences;
            at += length;
            to = putUtf16(*point, to);
            continue;
        }
        if (++result.oddCount <= NearlyUtf8::mostOdd) {
            result.odd.push_back({static_cast<std::size_t>(to - result.text.data()), *at});
        }
        *to++ = windows1252(*at++);
    }
    result.text.resize(static_cast<std::size_t>(to - result.text.data()));
    return result;
}

std::u16string decodeWindows1252(std::string_view bytes) {
    std::u16string text(bytes.size(), u'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [](char byte) { return windows1252(static_cast<unsigned char>(byte)); });
    return text;
}

std::u16string decodeText(std::string_view bytes) {
    auto text = decodeUtf8(bytes);
    return text ? std::move(*text) : decodeWindows1252(bytes);
}

std::string encodeUtf8(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size() + text.size() / 8);
    for (std::size_t at = 0; at < text.size();) {
        const char16_t unit = text[at];
        const std::size_t length = unitsOfCharacter(text, at);
        if (length == 2) {
            putUtf8(0x10000 + ((unit & 0x3FFU) << 10U) + (text[at + 1] & 0x3FFU), bytes);
        } else {
            putUtf8(isHighSurrogate(unit) || isLowSurrogate(unit) ? replacement : unit, bytes);
        }
        at += length;
    }
    return bytes;
}

std::size_t unitsOfCharacter(std::u16string_view text, std::size_t at) {
    const bool pair =
        isHighSurrogate(text[at]) && at + 1 < text.size() && isLowSurrogate(text[at + 1]);
    return pair ? 2 : 1;
}

bool hasUnpairedSurrogate(std::u16string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = unitsOfCharacter(text, at);
        if (length == 1 && (isHighSurrogate(text[at]) || isLowSurrogate(text[at]))) {
            return true;
        }
        at += length;
    }
    return false;
}

} // namespace tessaly
