#pragma once

#include <string>

namespace tessaly {

// The names that this process took off the disk and has not written again, by their paths of the
// system. Where letters of either case are names of their own, `deck.wml` may lie beside
// `Deck.wml`: once one of them is removed, its name is free, and does not lead to the other.

/// Nothing is at `path` any more, nor below it.
void nameRemoved(const std::string& path);

/// Something was made at `path`.
void nameMade(const std::string& path);

bool wasRemoved(const std::string& path);

} // namespace tessaly
