#pragma once

#include "external/FileSystemObject.h"
#include "platform/files/FileHandle.h"

#include <cstddef>
#include <memory>
#include <string>

namespace tessaly {

/// A stream over a file that was opened for reading, decoded as decodeFile does. The file is read
/// in one go at the first use, since only the whole of it tells its encoding. A line ends at CR LF
/// or at a bare LF.
std::shared_ptr<TextStream> makeReadingStream(FileHandle file);

/// A stream over a file that was opened for writing; writes UTF-8 at the file's position, as
/// encodeFile does.
std::shared_ptr<TextStream> makeWritingStream(FileHandle file);

} // namespace tessaly
