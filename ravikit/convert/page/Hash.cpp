#include "ravikit/convert/page/Hash.h"

#include <array>

namespace ravikit {

std::uint64_t hashOf(std::u16string_view text) {
    // In four strands, so that the machine has something to do while it multiplies.
    std::array<std::uint64_t, 4> strands{text.size() * 0x9E3779B97F4A7C15U, 1, 2, 3};
    std::size_t at = 0;
    for (; at + 16 <= text.size(); at += 16) {
        for (std::size_t i = 0; i < strands.size(); ++i) {
            strands[i] = mixed(strands[i], fourUnits(text.data() + at + 4 * i));
        }
    }
    std::uint64_t hash = strands[0];
    for (std::size_t i = 1; i < strands.size(); ++i) {
        hash = mixed(hash, strands[i]);
    }
    for (; at < text.size(); ++at) {
        hash = mixed(hash, text[at]);
    }
    return (hash ^ hash >> 32) * 0x9E3779B97F4A7C15U;
}

} // namespace ravikit
