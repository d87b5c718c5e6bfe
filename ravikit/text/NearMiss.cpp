#include "ravikit/text/NearMiss.h"

#include <algorithm>
#include <array>

namespace ravikit {
namespace {

/// Nobody misspells a longer name by a letter or two and cannot see it.
constexpr std::size_t longest = 32;

char16_t lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
}

/// How many letters must be put in, left out, changed or swapped with their neighbour, case aside.
std::uint32_t distance(std::u16string_view a, std::u16string_view b) {
    using Row = std::array<std::uint32_t, longest + 1>;
    Row twoAgo{};
    Row last{};
    Row row{};
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = static_cast<std::uint32_t>(j);
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        twoAgo = last;
        last = row;
        row[0] = static_cast<std::uint32_t>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const bool same = lower(a[i - 1]) == lower(b[j - 1]);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) &&
                lower(a[i - 2]) == lower(b[j - 1])) {
                row[j] = std::min(row[j], twoAgo[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

} // namespace

void NearMiss::offer(std::u16string_view name) {
    const std::size_t shorter = std::min(name.size(), m_written.size());
    const std::size_t longer = std::max(name.size(), m_written.size());
    if (longer > longest || longer - shorter >= m_distance) {
        return;
    }
    // The shorter a name, the more names are near it by chance.
    const std::uint32_t furthest = shorter <= 2 ? 0 : shorter <= 5 ? 1 : 2;
    const std::uint32_t found = distance(m_written, name);
    if (found <= furthest && found < m_distance) {
        m_distance = found;
        m_best = name;
    }
}

} // namespace ravikit
