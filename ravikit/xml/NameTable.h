#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ravikit {

/// The identity of a name in two words. A name of up to 16 ASCII characters is its own key, one
/// byte a character; any other has a hash in `low` and a mark in `high` that no short name has.
struct NameKey {
    std::uint64_t low = 0;
    std::uint64_t high = 0;

    static constexpr std::uint32_t shortLength = 16;
    static NameKey of(std::u16string_view name);
    bool isShort() const { return high >> 63 == 0; }
    bool operator==(const NameKey&) const = default;
};

/// The names of a text, each stored once and known by a number from 0 in the order of first
/// appearance. A view that is handed out stays good as long as the table.
class NameTable {
public:
    using Id = std::uint32_t;
    static constexpr Id none = 0xFFFFFF;

    NameTable() = default;

    /// A table that holds the names of `base` to begin with, under the same numbers. It keeps
    /// `base`, which must not change any more.
    explicit NameTable(std::shared_ptr<const NameTable> base);

    /// The table that this one began with, or none.
    const NameTable* base() const { return m_base.get(); }

    /// The number of `name`, which is added if it is new; `none` when the table holds as many names
    /// as there are numbers.
    Id intern(std::u16string_view name);

    /// The number of the short name that `key` is the key of, or `none`.
    Id find(const NameKey& key) const {
        std::size_t at = place(key);
        while (m_slots[at].key != key && m_slots[at].id != none) {
            at = (at + 1) & (m_slots.size() - 1);
        }
        return m_slots[at].id;
    }

    /// The number of `name`, or `none`.
    Id find(std::u16string_view name) const;

    std::u16string_view text(Id id) const { return m_names[id]; }
    std::uint32_t size() const { return static_cast<std::uint32_t>(m_names.size()); }

    /// Memory that the table holds on to, in bytes.
    std::size_t memoryUse() const;

private:
    struct Slot {
        NameKey key;
        Id id = none;
    };

    std::size_t place(const NameKey& key) const {
        const std::uint64_t hash = ((key.low ^ m_seed) * 0x9E3779B97F4A7C15U) ^
                                   ((key.high + m_seed) * 0xC2B2AE3D27D4EB4FU);
        return static_cast<std::size_t>(hash >> m_shift);
    }
    std::size_t slotOf(std::u16string_view name, const NameKey& key) const;
    void grow();
    std::u16string_view store(std::u16string_view name);

    std::shared_ptr<const NameTable> m_base; // whose storage the first names stand in
    std::vector<std::u16string_view> m_names;
    std::vector<Slot> m_slots =
        std::vector<Slot>(2); // open addressing; at most half of them are taken
    std::vector<std::unique_ptr<char16_t[]>> m_chunks;
    std::size_t m_chunkUsed = 0;
    std::size_t m_chunkSize = 0;
    std::size_t m_storedUnits = 0;
    std::uint64_t m_seed = 0;   // differs from process to process: no text can provoke collisions
    std::uint32_t m_shift = 63; // leaves as many bits of a hash as number the slots
};

} // namespace ravikit
