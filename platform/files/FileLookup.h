#pragma once

#include "util/Failure.h"

#include <sys/stat.h>

#include <string>

namespace tessaly {

/// What the system has for a path of the component.
struct Found {
    enum class State {
        Exists,
        NameMissing,   ///< the folder is there, the last name is not
        FolderMissing, ///< a folder on the way is not there or is no folder
    };

    State state = State::FolderMissing;
    std::string path;         ///< of the system; usable unless FolderMissing
    bool namesFolder = false; ///< the path was written with a separator at its end
    struct stat status = {};  ///< of what exists, links followed

    bool exists() const { return state == State::Exists; }
    bool isFolder() const { return exists() && S_ISDIR(status.st_mode); }

    /// Devices, pipes and sockets are no files: opening one could wait for ever.
    bool isFile() const { return exists() && S_ISREG(status.st_mode) && !namesFolder; }
};

/// Finds `path` without regard to the case of letters, name by name from the root on: the exact
/// name wins, otherwise the first in sorted order. A path that exists as it is written costs one
/// look. A name that was `removed` leads to no other until it is made again.
///
/// Fails with BadFileName for what no path can be, with DiskNotReady for a drive that is not
/// mounted or whose folder has gone, and as the system does where it may not look.
Found lookUp(const std::u16string& path);

/// lookUp of an existing file. Anything else fails: FileNotFound, or PathNotFound if its folder is
/// missing.
Found lookUpFile(const std::u16string& path);

/// To be called once `found`, which lookUp gave for `path`, is off the disk.
void removed(const Found& found, const std::u16string& path);

/// Fails with PermissionDenied if the owner may not write into the folder that holds `path`, a
/// path of the system: also for a user whom the system would let.
void requireWritableFolderOf(const std::string& path);

/// True if the owner may not write it.
bool isReadOnly(const struct stat& status);

} // namespace tessaly
