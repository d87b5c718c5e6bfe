#pragma once

#include <utility>

namespace tessaly {

/// Calls `release` with `object` when the module is unloaded or the process has ended: after the
/// end of every static object, the last called first. Never fails after the object was made.
void releaseAtEnd(void* object, void (*release)(void*));

/// What a module keeps for itself, for a function's static reference:
///
///     static auto& known = lasting<Known>();
///
/// It outlives the static objects of the host. One of those may hold a document, which still needs
/// what the module keeps when it ends.
template <class T, class... Arguments>
T& lasting(Arguments&&... arguments) {
    auto* const object = new T(std::forward<Arguments>(arguments)...);
    releaseAtEnd(object, [](void* made) { delete static_cast<T*>(made); });
    return *object;
}

} // namespace tessaly
