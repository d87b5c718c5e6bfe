#pragma once

#include "util/Failure.h"

#include <atomic>
#include <cstddef>
#include <memory>

namespace tessaly {

/// The root of everything that a host can hold: documents, services, controls, DOM objects.
/// One root lets a member accept "an object" and refuse one of another type, and counts the
/// objects alive, so that a leak shows as a number.
///
/// Objects are held by std::shared_ptr. Interfaces derive virtually, so that one class can stand
/// for several of them.
class Object {
public:
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    Object(Object&&) = delete;
    Object& operator=(Object&&) = delete;
    virtual ~Object() { s_live.fetch_sub(1, std::memory_order_relaxed); }

    /// How many objects exist in the process now, whoever holds them.
    static std::size_t liveCount() { return s_live.load(std::memory_order_relaxed); }

protected:
    Object() { s_live.fetch_add(1, std::memory_order_relaxed); }

private:
    inline static std::atomic<std::size_t> s_live{0};
};

using ObjectRef = std::shared_ptr<Object>;

/// `object` seen as a T. No object gives no object; an object of another type fails with
/// FailureCode::TypeMismatch.
template <class T>
std::shared_ptr<T> narrow(const ObjectRef& object) {
    auto narrowed = std::dynamic_pointer_cast<T>(object);
    if (object && !narrowed) {
        throw Failure(FailureCode::TypeMismatch);
    }
    return narrowed;
}

/// The object that `reference` holds; an absent one fails with FailureCode::ObjectNotSet.
template <class T>
T& require(const std::shared_ptr<T>& reference) {
    if (!reference) {
        throw Failure(FailureCode::ObjectNotSet);
    }
    return *reference;
}

} // namespace tessaly
