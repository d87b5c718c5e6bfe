#pragma once

#include <string>

namespace tessaly {

/// Removes the folder at `path`, a path of the system, with all that it holds. Links are removed,
/// not followed. Without `force` it stops with PermissionDenied at the first thing inside that is
/// read-only; with it, read-only files and folders go too. What was removed before a failure stays
/// removed.
void removeFolder(const std::string& path, bool force);

} // namespace tessaly
