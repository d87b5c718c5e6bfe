#pragma once

#include "external/FileSystemObject.h"
#include "ravikit/validity/Dtd.h"

#include <memory>
#include <string>

namespace tessaly {

/// The DTD in the file `path`, compiled once a process for a path and a time stamp. None if there
/// is no such file, or if it can't be read or is no DTD.
std::shared_ptr<const ravikit::Dtd> dtdOfFile(FileSystemObject& files, const std::u16string& path);

/// The DTD of WML that the library brings along, compiled once a process.
std::shared_ptr<const ravikit::Dtd> builtInDtd();

} // namespace tessaly
