#pragma once

#include <string>
#include <string_view>

namespace support {

/// ASCII as UTF-16.
inline std::u16string u16(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

/// UTF-16 as ASCII, with a question mark for what is none.
inline std::string ascii(std::u16string_view text) {
    std::string out;
    for (const char16_t unit : text) {
        out.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
    return out;
}

/// `piece` as often as told.
inline std::u16string repeated(std::u16string_view piece, std::size_t times) {
    std::u16string all;
    all.reserve(piece.size() * times);
    while (times-- > 0) {
        all += piece;
    }
    return all;
}

} // namespace support
