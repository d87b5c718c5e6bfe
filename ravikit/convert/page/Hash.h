#pragma once

#include <cstdint>
#include <string_view>

namespace ravikit {

/// Four units as one word, the same on every machine.
inline std::uint64_t fourUnits(const char16_t* at) {
    return std::uint64_t{at[0]} | std::uint64_t{at[1]} << 16 | std::uint64_t{at[2]} << 32 |
           std::uint64_t{at[3]} << 48;
}

/// `hash` with a word more in it.
inline std::uint64_t mixed(std::uint64_t hash, std::uint64_t word) {
    hash = (hash ^ word) * 0xC2B2AE3D27D4EB4FU;
    return hash ^ hash >> 29;
}

/// A hash that is the same in every process.
std::uint64_t hashOf(std::u16string_view text);

} // namespace ravikit
