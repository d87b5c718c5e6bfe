#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// UTF-16 for strict UTF-8: nothing if `bytes` holds an overlong form, a surrogate, a value beyond
/// U+10FFFF or an incomplete sequence. A byte-order mark stays in the text as U+FEFF.
std::optional<std::u16string> decodeUtf8(std::string_view bytes);

/// UTF-16 for Windows-1252. Every byte has a character: the five that the code page leaves open
/// (81, 8D, 8F, 90, 9D) become the control characters of the same number, so that the bytes can be
/// had back from the text.
std::u16string decodeWindows1252(std::string_view bytes);

/// A name or a message of the system as text: UTF-8 if all of it is, otherwise Windows-1252.
std::u16string decodeText(std::string_view bytes);

/// What is nearly UTF-8.
struct NearlyUtf8 {
    /// A byte that is no part of a UTF-8 sequence.
    struct Odd {
        std::size_t offset; ///< of its character in the text
        unsigned char byte;
    };
    static constexpr std::size_t mostOdd = 100;

    std::u16string text;
    std::vector<Odd> odd;      ///< the first `mostOdd` of them
    std::size_t oddCount = 0;  ///< of all
    std::size_t sequences = 0; ///< characters of several bytes
};

/// Reads UTF-8, and each byte that is none as its character in Windows-1252.
NearlyUtf8 decodeNearlyUtf8(std::string_view bytes);

/// UTF-8 for `text`, an unpaired surrogate as U+FFFD.
std::string encodeUtf8(std::u16string_view text);

/// The units from `at` on that make up one character: 2 for a surrogate pair, otherwise 1. `at` is
/// inside `text`.
std::size_t unitsOfCharacter(std::u16string_view text, std::size_t at);

/// True if `text` holds half a surrogate pair without the other half.
bool hasUnpairedSurrogate(std::u16string_view text);

inline bool isHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

inline bool isLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

} // namespace tessaly
