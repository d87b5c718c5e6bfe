#pragma once

#include "external/ModalForm.h"

namespace tessaly {

/// The window of the file-exists dialog: its size and its controls in tab order.
FormLayout fileExistsLayout();

} // namespace tessaly
