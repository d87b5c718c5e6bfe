#pragma once

#include "util/LetterCase.h"
#include "util/Value.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

/// An ordered list of references with optional keys: positions from 1, keys compared without
/// regard to case, a key at most once.
///
/// A position outside the list fails with OutOfRange, a key that is not in it with InvalidArgument,
/// a key that is taken with KeyInUse, and a Value that is neither number nor string with
/// TypeMismatch. A failed operation leaves the list as it was.
template <class T>
class KeyedList {
public:
    void add(const std::shared_ptr<T>& item) { m_entries.push_back({item, std::nullopt}); }

    void add(const std::shared_ptr<T>& item, const std::u16string& key) {
        std::u16string folded = toLower(key);
        if (!m_byKey.try_emplace(folded, item).second) {
            throw Failure(FailureCode::KeyInUse);
        }
        m_entries.push_back({item, std::move(folded)});
    }

    std::shared_ptr<T> item(const Value& indexOrKey) const {
        if (const auto* key = std::get_if<std::u16string>(&indexOrKey)) {
            return findKey(toLower(*key))->second;
        }
        return m_entries[findPosition(indexOrKey)].item;
    }

    void remove(const Value& indexOrKey) {
        const auto* key = std::get_if<std::u16string>(&indexOrKey);
        const std::size_t position =
            key ? positionOf(findKey(toLower(*key))->first) : findPosition(indexOrKey);
        const auto entry = m_entries.begin() + static_cast<std::ptrdiff_t>(position);
        // The reference ends last: what its end sets off must find the list in order.
        const std::shared_ptr<T> last = std::move(entry->item);
        if (entry->key) {
            m_byKey.erase(*entry->key);
        }
        m_entries.erase(entry);
    }

    std::int32_t count() const { return static_cast<std::int32_t>(m_entries.size()); }

    /// The references as they stand now, in order. What is added or removed later does not disturb
    /// a walk over them.
    std::vector<std::shared_ptr<T>> enumerate() const {
        std::vector<std::shared_ptr<T>> items;
        items.reserve(m_entries.size());
        for (const Entry& entry : m_entries) {
            items.push_back(entry.item);
        }
        return items;
    }

private:
    struct Entry {
        std::shared_ptr<T> item;
        std::optional<std::u16string> key;
    };

    using ByKey = std::map<std::u16string, std::shared_ptr<T>>;

    static double numberOf(const Value& index) {
        if (const auto* whole = std::get_if<std::int32_t>(&index)) {
            return *whole;
        }
        if (const auto* number = std::get_if<double>(&index)) {
            return *number;
        }
        throw Failure(FailureCode::TypeMismatch);
    }

    std::size_t findPosition(const Value& index) const {
        const double position = numberOf(index);
        if (!(position >= 1 && position < static_cast<double>(m_entries.size()) + 1)) {
            throw Failure(FailureCode::OutOfRange);
        }
        return static_cast<std::size_t>(position) - 1;
    }

    typename ByKey::const_iterator findKey(const std::u16string& folded) const {
        const auto found = m_byKey.find(folded);
        if (found == m_byKey.end()) {
            throw Failure(FailureCode::InvalidArgument);
        }
        return found;
    }

    std::size_t positionOf(const std::u16string& folded) const {
        const auto has = [&](const Entry& entry) { return entry.key == folded; };
        return static_cast<std::size_t>(std::find_if(m_entries.begin(), m_entries.end(), has) -
                                        m_entries.begin());
    }

    // Removal from either end costs the same however long the list is.
    std::deque<Entry> m_entries;
    ByKey m_byKey;
};

} // namespace tessaly
