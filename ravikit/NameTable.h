#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ravikit {

/// The names of a text, each stored once and told by a number from 0 in the order of first
/// appearance. A view that is handed out stays good as long as the table.
class NameTable {
public:
    using Id = std::uint32_t;
    static constexpr Id none = 0xFFFFFF;

    /// The number of `name`, which is added if it is new.
    Id intern(std::u16string_view name);

    /// The number of `name`, or `none`.
    Id find(std::u16string_view name) const;

    std::u16string_view text(Id id) const { return m_names[id]; }
    std::uint32_t size() const { return static_cast<std::uint32_t>(m_names.size()); }

private:
    std::vector<std::u16string_view> m_names;
    // The implementation adds its storage and its hash table here.
};

} // namespace ravikit
