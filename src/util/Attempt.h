#pragma once

#include "util/Failure.h"

#include <new>
#include <optional>

namespace tessaly {

/// Runs `step` and gives the failure that it ended with, or nothing. A step that memory did not
/// suffice for counts as failed with FailureCode::OutOfMemory; any other exception is no failure
/// of a step and goes through.
///
/// This is how a routine drops a failed step and goes on with the next one: it attempts each step
/// and looks at the failure only where one matters to it.
template <class Step>
std::optional<Failure> attempt(Step&& step) {
    try {
        step();
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::bad_alloc&) {
        return Failure(FailureCode::OutOfMemory);
    }
}

} // namespace tessaly
