#pragma once

#include <string>

/// What making a project needs of the disk.
namespace tessaly::modGeneral {

/// The system's folder for temporary files with a trailing `\`; empty if there is none, or if its
/// path is too long for the system's own buffers.
std::u16string getTempPath();

/// Makes the folder `path` if it is missing; its parent must be there. No failure gets out: one of
/// permission or of a disk that is not ready is shown to the user, any other is silent.
void ensureFolder(const std::u16string& path);

/// Settles with the user that the file at the full path `strFile` is there already. True: `strFile`
/// now holds another name, to be tested again. False: the name is free (the user may have had the
/// old file deleted), or `strFile` is empty, since the user gave up or the file could not be
/// deleted. No failure gets out, as with ensureFolder.
///
/// The file at `strKeep` is never deleted, under whatever name or link it is reached.
bool promptFileExists(std::u16string& strFile, const std::u16string& strKeep);

} // namespace tessaly::modGeneral
