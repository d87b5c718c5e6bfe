#pragma once

#include "ravikit/text/LargePages.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

namespace ravikit {

struct Node;

/// A growing array of nodes. It grows by `realloc`, which for a large block moves pages and copies
/// nothing, so that a tree of any size is built without a second copy of it.
template <class T>
class GrowingArray {
public:
    GrowingArray() = default;
    ~GrowingArray() { std::free(m_data); } // NOLINT(cppcoreguidelines-no-malloc)
    GrowingArray(const GrowingArray&) = delete;
    GrowingArray& operator=(const GrowingArray&) = delete;
    GrowingArray(GrowingArray&& other) noexcept
        : m_data(std::exchange(other.m_data, nullptr))
        , m_size(std::exchange(other.m_size, 0))
        , m_capacity(std::exchange(other.m_capacity, 0)) {}
    GrowingArray& operator=(GrowingArray&& other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
        return *this;
    }

    std::uint32_t size() const { return m_size; }
    std::size_t bytes() const { return std::size_t{m_capacity} * sizeof(T); }
    const T& operator[](std::uint32_t index) const { return m_data[index]; }
    T& operator[](std::uint32_t index) { return m_data[index]; }

    /// Appends `value` and gives its index.
    std::uint32_t push(const T& value) {
        if (m_size == m_capacity) {
            resizeTo(m_capacity < 64 ? 64 : m_capacity + m_capacity / 2);
        }
        m_data[m_size] = value;
        return m_size++;
    }

    /// Drops all from `size` on.
    void truncate(std::uint32_t size) { m_size = size; }

    void reserve(std::uint32_t capacity) {
        if (capacity > m_capacity) {
            resizeTo(capacity);
        }
    }

    /// Gives back what is not used.
    void shrink() {
        if (m_size != 0 && m_size != m_capacity) {
            resizeTo(m_size);
        }
    }

private:
    void resizeTo(std::uint32_t capacity) {
        // NOLINTNEXTLINE(cppcoreguidelines-no-malloc)
        void* data = std::realloc(m_data, std::size_t{capacity} * sizeof(T));
        if (data == nullptr) {
            throw std::bad_alloc();
        }
        m_data = static_cast<T*>(data);
        m_capacity = capacity;
        askForLargePages(m_data, bytes());
    }

    T* m_data = nullptr;
    std::uint32_t m_size = 0;
    std::uint32_t m_capacity = 0;
};

using NodeArray = GrowingArray<Node>;

} // namespace ravikit
