#pragma once

#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>

namespace std { // NOLINT(cert-dcl58-cpp): gtest looks for the printer beside the type

/// Shows UTF-16 text in a failure message; what is not ASCII as its number.
inline void PrintTo(const std::u16string& text, std::ostream* out) {
    *out << '"';
    for (const char16_t unit : text) {
        if (unit >= 0x20 && unit < 0x7F) {
            *out << static_cast<char>(unit);
        } else {
            *out << "\\u" << std::hex << std::setw(4) << std::setfill('0')
                 << static_cast<unsigned>(unit) << std::dec;
        }
    }
    *out << '"';
}

} // namespace std

namespace support {

/// ASCII as UTF-16.
inline std::u16string u16(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

} // namespace support
