#pragma once

#include <cstdint>
#include <string_view>

namespace ravikit {

/// Finds among names the one that an author may have meant.
class NearMiss {
public:
    /// `written` must outlive this.
    explicit NearMiss(std::u16string_view written)
        : m_written(written) {}

    /// Weighs `name`, which must outlive this too. Of two that are equally near the first counts.
    void offer(std::u16string_view name);

    /// The nearest name; empty if none is near enough to be more than a guess.
    std::u16string_view best() const { return m_best; }

private:
    std::u16string_view m_written;
    std::u16string_view m_best;
    std::uint32_t m_distance = 3; ///< of the best; nothing further off than 2 is offered
};

} // namespace ravikit
