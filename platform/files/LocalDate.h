#pragma once

#include "util/Value.h"

#include <ctime>

namespace tessaly {

/// A moment in the local time of the process, to the second.
Date localDate(std::time_t moment);

} // namespace tessaly
