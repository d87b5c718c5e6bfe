#pragma once

#include "platform/runtime/FolderLock.h"

#include <optional>
#include <string>

namespace tessaly {

// The file below a class registry. All paths are paths of the system; every failure names the file.

/// The bytes of `file`; none if there is no such file.
std::optional<std::string> readRegistryFile(const std::string& file);

/// Puts a new file with `text` in the place of `file`, of which there is never a half. It keeps the
/// old one's permissions; a symbolic link stays one. The caller holds the lock.
void replaceRegistryFile(const std::string& file, const std::string& text);

void removeRegistryFile(const std::string& file);

/// Keeps other processes from changing a registry as long as it lives. Makes the folder of `file`
/// if it is missing, and waits until it is free.
FolderLock lockRegistry(const std::string& file);

} // namespace tessaly
