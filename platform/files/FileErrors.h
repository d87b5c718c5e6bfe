#pragma once

#include "util/Failure.h"

namespace tessaly {

/// The failure for the system's error number `error`. `missing` is what it means that nothing is
/// there: FileNotFound for a file, PathNotFound for a folder.
Failure failureOf(int error, FailureCode missing = FailureCode::FileNotFound);

/// Fails with the failure of the present `errno`.
[[noreturn]] void failByErrno(FailureCode missing = FailureCode::FileNotFound);

} // namespace tessaly
