#pragma once

#include "util/Object.h"

namespace tessaly {

/// A yellow triangle with a black exclamation mark, as a Picture: an icon in 32 by 32 and in 16 by
/// 16 pixels of 16 colours. It belongs to the file-exists dialog and not to the store.
ObjectRef warningPicture();

} // namespace tessaly
