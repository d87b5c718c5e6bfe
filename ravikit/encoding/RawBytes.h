#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

/// A file whose encoding cannot be read is held as its bytes: those of ASCII as characters, each
/// other one as half of a surrogate pair, which no character is. So they travel through a document
/// and go back to the disk as they were.
namespace ravikit {

inline bool isRawByte(char16_t unit) {
    return unit >= 0xDC80 && unit <= 0xDCFF;
}

inline char16_t rawByte(unsigned char byte) {
    return static_cast<char16_t>(byte < 0x80 ? byte : 0xDC00 + byte);
}

/// The byte that `unit` stands for: a raw byte, or an ASCII character.
inline char byteOf(char16_t unit) {
    return static_cast<char>(unit & 0xFF);
}

/// Where in `text` the first raw byte stands, or its size: as the second half of a pair such a unit
/// is part of a character.
inline std::size_t findRawByte(std::u16string_view text, std::size_t from = 0) {
    const auto isSecondHalf = [text](std::size_t at) {
        return at > 0 && text[at - 1] >= 0xD800 && text[at - 1] <= 0xDBFF;
    };
    while (from < text.size() && (!isRawByte(text[from]) || isSecondHalf(from))) {
        ++from;
    }
    return from;
}

inline std::u16string rawText(std::string_view bytes) {
    std::u16string text(bytes.size(), u'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [](char byte) { return rawByte(static_cast<unsigned char>(byte)); });
    return text;
}

} // namespace ravikit
