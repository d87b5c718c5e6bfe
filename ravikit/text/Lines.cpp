#include "ravikit/text/Lines.h"

#include <algorithm>

namespace ravikit {

Lines::Lines(std::u16string_view text)
    : m_text(text) {
    const auto size = static_cast<std::uint32_t>(text.size());
    m_blocks.reserve(size / blockUnits + 1);
    Start start{1, 0};
    for (std::uint32_t block = 0;; block += blockUnits) {
        m_blocks.push_back(start);
        if (size - block < blockUnits) {
            break;
        }
        advance(start, block, block + blockUnits);
    }
}

LineColumn Lines::at(std::uint32_t offset) const {
    offset = std::min(offset, static_cast<std::uint32_t>(m_text.size()));
    const Start start = startOf(offset);
    return {start.line, offset - start.begin + 1};
}

std::u16string_view Lines::lineAt(std::uint32_t offset) const {
    offset = std::min(offset, static_cast<std::uint32_t>(m_text.size()));
    const std::uint32_t begin = startOf(offset).begin;
    return m_text.substr(begin, m_text.find_first_of(u"\r\n", begin) - begin);
}

Lines::Start Lines::startOf(std::uint32_t offset) const {
    Start start = m_blocks[offset / blockUnits];
    advance(start, offset / blockUnits * blockUnits, offset);
    return start;
}

// Moves from the line of the unit at `from` to the line of the unit at `to`.
void Lines::advance(Start& start, std::uint32_t from, std::uint32_t to) const {
    for (std::uint32_t i = from; i < to; ++i) {
        const bool ends =
            m_text[i] == u'\n' ||
            (m_text[i] == u'\r' && (i + 1 == m_text.size() || m_text[i + 1] != u'\n'));
        if (ends) {
            ++start.line;
            start.begin = i + 1;
        }
    }
}

} // namespace ravikit
