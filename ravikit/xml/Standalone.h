#pragma once

#include "ravikit/xml/Tree.h"

#include <string>

namespace ravikit {

/// The source of the node `id` of a well-formed text, fit to stand without its DOCTYPE: a reference
/// to an entity that the text's own DOCTYPE declares gives way to what the entity stands for. All
/// else is as written.
std::u16string standaloneText(const Tree& tree, Tree::Id id);

} // namespace ravikit
