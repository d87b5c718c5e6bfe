#pragma once

#include "external/Controls.h"

namespace tessaly {

/// A list bar for hosts that have none.
class HeadlessListBar : public ListBarControl {};

} // namespace tessaly
