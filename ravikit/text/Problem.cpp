#include "ravikit/text/Problem.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace ravikit {

void Problems::add(ProblemKind kind, std::uint32_t begin, std::uint32_t end,
                   std::u16string reason) {
    if (full()) {
        return;
    }
    if (m_list.size() == limit) {
        kind = ProblemKind::TooManyProblems;
        reason = u"there are more errors than can be listed; mend these first";
    }
    m_list.push_back({kind, begin, end, std::move(reason)});
}

void Problems::truncate(std::size_t size) {
    if (size < m_list.size()) {
        m_list.erase(m_list.begin() + static_cast<std::ptrdiff_t>(size), m_list.end());
    }
}

void Problems::sort() {
    // The one that closes the list stands at the place of an error after which nothing was listed,
    // which need not be the last place.
    const auto behind = full() ? m_list.end() - 1 : m_list.end();
    std::stable_sort(m_list.begin(), behind,
                     [](const Problem& a, const Problem& b) { return a.begin < b.begin; });
}

} // namespace ravikit
