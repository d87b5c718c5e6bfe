#pragma once

#include <string>
#include <string_view>

namespace support {

/// ASCII as UTF-16.
inline std::u16string u16(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

} // namespace support
