#include "ravikit/xml/NameTable.h"

#include <algorithm>
#include <random>
#include <utility>

namespace ravikit {
namespace {

std::uint64_t processSeed() {
    static const std::uint64_t seed = [] {
        std::random_device device;
        return (std::uint64_t{device()} << 32) | device();
    }();
    return seed;
}

constexpr std::uint64_t longMark = std::uint64_t{1} << 63;

} // namespace

NameKey NameKey::of(std::u16string_view name) {
    NameKey key;
    if (name.size() <= shortLength &&
        std::all_of(name.begin(), name.end(), [](char16_t c) { return c != 0 && c < 0x80; })) {
        for (std::size_t i = 0; i < name.size(); ++i) {
            (i < 8 ? key.low : key.high) |= std::uint64_t{name[i]} << (i % 8 * 8);
        }
        return key;
    }
    std::uint64_t hash = processSeed();
    for (const char16_t unit : name) {
        hash = (hash ^ unit) * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 29;
    }
    key.low = hash;
    key.high = longMark | name.size();
    return key;
}

NameTable::NameTable(std::shared_ptr<const NameTable> base)
    : m_base(std::move(base))
    , m_names(m_base->m_names)
    , m_slots(m_base->m_slots)
    , m_seed(m_base->m_seed)
    , m_shift(m_base->m_shift) {}

NameTable::Id NameTable::find(std::u16string_view name) const {
    return m_slots[slotOf(name, NameKey::of(name))].id;
}

std::size_t NameTable::memoryUse() const {
    return m_names.capacity() * sizeof(std::u16string_view) + m_slots.capacity() * sizeof(Slot) +
           m_storedUnits * sizeof(char16_t);
}

// The slot that holds the name, or the empty one in which it belongs.
std::size_t NameTable::slotOf(std::u16string_view name, const NameKey& key) const {
    std::size_t at = place(key);
    while (m_slots[at].id != none) {
        const Slot& slot = m_slots[at];
        if (slot.key == key && (key.isShort() || m_names[slot.id] == name)) {
            break;
        }
        at = (at + 1) & (m_slots.size() - 1);
    }
    return at;
}

NameTable::Id NameTable::intern(std::u16string_view name) {
    const NameKey key = NameKey::of(name);
    if (m_names.size() * 2 >= m_slots.size()) {
        grow();
    }
    Slot& slot = m_slots[slotOf(name, key)];
    if (slot.id == none && m_names.size() < none) {
        slot.key = key;
        slot.id = static_cast<Id>(m_names.size());
        m_names.push_back(store(name));
    }
    return slot.id;
}

void NameTable::grow() {
    const std::size_t size = std::max(std::size_t{128}, m_slots.size() * 2);
    std::vector<Slot> old = std::move(m_slots);
    m_slots = std::vector<Slot>(size);
    m_seed = processSeed();
    for (m_shift = 64; (std::size_t{1} << (64 - m_shift)) < size;) {
        --m_shift;
    }
    for (const Slot& slot : old) {
        if (slot.id != none) {
            m_slots[slotOf(m_names[slot.id], slot.key)] = slot;
        }
    }
}

std::u16string_view NameTable::store(std::u16string_view name) {
    if (m_chunkSize - m_chunkUsed < name.size()) {
        // Chunks grow with the table: few allocations for many names, little waste for few.
        m_chunkSize = std::max({name.size(), std::size_t{512}, m_storedUnits / 2});
        m_chunkUsed = 0;
        m_chunks.push_back(std::make_unique<char16_t[]>(m_chunkSize));
        m_storedUnits += m_chunkSize;
    }
    char16_t* const copy = m_chunks.back().get() + m_chunkUsed;
    std::copy(name.begin(), name.end(), copy);
    m_chunkUsed += name.size();
    return {copy, name.size()};
}

} // namespace ravikit
