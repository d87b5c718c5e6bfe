#pragma once

#include "ravikit/xml/Tree.h"

#include <string>

namespace ravikit {

/// The page of `tree`: what a browser's body is to hold. A text without any element, which is no
/// deck, is shown as it stands, and nothing of it is carried.
std::u16string writePage(const Tree& tree);

} // namespace ravikit
