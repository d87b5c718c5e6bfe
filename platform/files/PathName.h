#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

// Paths as the component writes them. `\` and `/` both separate. `C:\x` lies on a mounted drive,
// and so does `C:x`, since a drive has no current folder of its own; `\x` is the POSIX path `/x`;
// anything else lies below the current folder. Several separators in a row count as one. `.` and
// `..` are worked out from the text, and `..` at a root stays there.

/// A path for the component from a path of the system, for hosts whose user types the latter. A
/// bare file name gets `.\` before it, so that it has a folder. A path that holds a `\` or is not
/// UTF-8 cannot be said in the component's way and fails with BadFileName.
std::u16string toComponentPath(const std::string& posixPath);

/// The path of the system for a path of the component, letters as they stand, not looked up. The
/// empty path stays empty. Fails with BadFileName or, for a drive that is not mounted, with
/// DiskNotReady.
std::string toPosixPath(const std::u16string& path);

/// Parts of a path by its text alone, as FileSystemObject gives them; separators at the end count
/// for nothing.
std::u16string fileNameOf(const std::u16string& path);
std::u16string baseNameOf(const std::u16string& path);
std::u16string extensionOf(const std::u16string& path);
std::u16string parentFolderOf(const std::u16string& path);

/// The full path without a separator at its end, except at a root. The empty path means the current
/// folder.
std::u16string absolutePathOf(const std::u16string& path);

/// A path taken apart, `.` and `..` resolved.
struct PathParts {
    char16_t drive = 0;                ///< its letter, or 0 without one
    bool rooted = false;               ///< starts at a root; true with a drive
    bool namesFolder = false;          ///< ends in a separator
    std::vector<std::u16string> names; ///< without a root, the first ones may be `..`
};

/// Fails with BadFileName for an empty path, one with a NUL or half a surrogate pair, and one
/// longer than any file system takes.
PathParts splitPath(std::u16string_view path);

/// Where the names of `parts` start in the system: `/`, the drive's folder, or empty for the
/// current folder. A drive that is not mounted fails with DiskNotReady.
std::string startOf(const PathParts& parts);

/// `name` inside `folder`, both paths of the system; an empty folder is the current one.
std::string joinPosix(const std::string& folder, std::string_view name);

/// The whole path of the system for `parts`.
std::string posixPathOf(const PathParts& parts);

} // namespace tessaly
