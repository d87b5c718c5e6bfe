#pragma once

#include "util/Failure.h"

#include <utility>

namespace tessaly {

/// `value` as the narrower integer type `To`; one that does not fit fails with
/// FailureCode::Overflow.
template <class To, class From>
To toInteger(From value) {
    if (!std::in_range<To>(value)) {
        throw Failure(FailureCode::Overflow);
    }
    return static_cast<To>(value);
}

} // namespace tessaly
