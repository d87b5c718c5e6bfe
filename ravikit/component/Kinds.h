#pragma once

#include "external/Ravikit.h"
#include "util/Failure.h"

#include <cstdint>

namespace tessaly {

/// A DTD and a schema can be given for markup alone: any other kind fails with InvalidArgument.
inline void requireMarkup(std::int32_t kind) {
    if (kind != kindMarkup) {
        throw Failure(FailureCode::InvalidArgument);
    }
}

/// Fails with InvalidArgument for a number that is no kind of text.
inline void requireKind(std::int32_t kind) {
    if (kind != kindPlain && kind != kindMarkup) {
        throw Failure(FailureCode::InvalidArgument);
    }
}

} // namespace tessaly
