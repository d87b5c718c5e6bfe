#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace ravikit {

/// Asks for the memory at `data` in large pages. For a large block that is about to be filled, the
/// time to get its memory page by page is a good part of all time.
inline void askForLargePages([[maybe_unused]] const void* data,
                             [[maybe_unused]] std::size_t bytes) {
#if defined(__linux__)
    constexpr std::size_t large = std::size_t{1} << 21;
    const auto begin = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t first = (begin + large - 1) / large * large;
    const std::uintptr_t behind = (begin + bytes) / large * large;
    if (first < behind) {
        // It is but a wish: whether it is granted makes no difference here.
        // NOLINTNEXTLINE(performance-no-int-to-ptr)
        static_cast<void>(madvise(reinterpret_cast<void*>(first), behind - first, MADV_HUGEPAGE));
    }
#endif
}

} // namespace ravikit
