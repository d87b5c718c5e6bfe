#pragma once

#include "util/Failure.h"

#include <string>

namespace tessaly {

/// A failure whose description is `what`, the path `path` of the system, and `reason` if there is
/// one.
Failure runtimeFailure(FailureCode code, const std::string& what, const std::string& path,
                       const std::u16string& reason = {});

} // namespace tessaly
