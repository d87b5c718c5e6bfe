#pragma once

#include <string>

namespace tessaly {

/// Makes the POSIX folder `folder` the root of the drive `letter`, for the whole process, instead
/// of an earlier one. A relative folder is taken from where the process stands now. The folder is
/// looked at when the drive is used. Anything but a letter A to Z, of either case, and an empty
/// folder fail with InvalidArgument.
void mountDrive(char16_t letter, const std::string& folder);

/// Takes the drive away; one that is not mounted stays so.
void unmountDrive(char16_t letter);

/// The folder of the drive; a drive that is not mounted fails with DiskNotReady.
std::string driveFolder(char16_t letter);

/// A to Z in either case.
bool isDriveLetter(char16_t unit);

} // namespace tessaly
