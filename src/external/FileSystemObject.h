#pragma once

#include "util/Object.h"
#include "util/Value.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// How a text stream is opened.
enum class IOMode : std::int32_t { ForReading = 1, ForWriting = 2, ForAppending = 8 };

/// The format of a text stream: 0 means single bytes in the system's code page.
inline constexpr std::int32_t formatAnsi = 0;

/// A text file that is open. It is closed when the last reference goes, if `Close` was not called.
class TextStream : public virtual Object {
public:
    /// True at once for an empty file.
    virtual bool AtEndOfStream() = 0;

    /// The next line without its end. Fails with PastEndOfFile at the end.
    virtual std::u16string ReadLine() = 0;

    /// All that has not been read yet. Fails with PastEndOfFile at the end.
    virtual std::u16string ReadAll() = 0;

    /// Writes `text` as it is. Fails with BadFileMode on a stream for reading.
    virtual void Write(const std::u16string& text) = 0;

    /// Writes `text` and CR LF.
    virtual void WriteLine(const std::u16string& text) = 0;

    /// Ends the stream. A failure to bring the last characters to the disk is reported here.
    virtual void Close() = 0;
};

/// A file that existed when it was asked for.
class File : public virtual Object {
public:
    static constexpr std::int32_t readOnly = 1; ///< a bit of Attributes

    virtual std::int32_t Attributes() = 0;
    virtual Date DateCreated() = 0;
    virtual Date DateLastModified() = 0;
    virtual std::shared_ptr<TextStream> OpenAsTextStream(IOMode mode, std::int32_t format) = 0;
};

/// The file service. Paths have `\` between their parts. Failures: FileNotFound for a missing
/// file, PathNotFound for a missing folder, PermissionDenied, DiskNotReady for a drive that is not
/// there, DiskFull, FileExists, BadFileName.
class FileSystemObject : public virtual Object {
public:
    /// What cannot be looked at does not exist. These two fail only where a host means to stop the
    /// work at hand.
    virtual bool FileExists(const std::u16string& path) = 0;
    virtual bool FolderExists(const std::u16string& path) = 0;

    /// True if both paths lead to one and the same file, by whatever case or link. Never fails.
    virtual bool isSameFile(const std::u16string& a, const std::u16string& b) = 0;

    virtual std::shared_ptr<File> GetFile(const std::u16string& path) = 0;

    /// `create`: a missing file is made. Opening for writing empties an existing one.
    virtual std::shared_ptr<TextStream> OpenTextFile(const std::u16string& path, IOMode mode,
                                                     bool create, std::int32_t format) = 0;

    virtual std::shared_ptr<TextStream> CreateTextFile(const std::u16string& path, bool overwrite,
                                                       bool unicode) = 0;

    virtual void CopyFile(const std::u16string& from, const std::u16string& to, bool overwrite) = 0;

    /// `force` removes a read-only file too.
    virtual void DeleteFile(const std::u16string& path, bool force) = 0;

    /// Makes one level; the parent must be there.
    virtual void CreateFolder(const std::u16string& path) = 0;

    /// Removes the folder with all that it holds.
    virtual void DeleteFolder(const std::u16string& path, bool force) = 0;

    /// Parts of a path, worked out from its text alone. The last component; that without its
    /// extension; the extension without its dot; the path without its last component and without
    /// a trailing `\`, except at a drive's root. Each is empty where there is none.
    virtual std::u16string GetFileName(const std::u16string& path) = 0;
    virtual std::u16string GetBaseName(const std::u16string& path) = 0;
    virtual std::u16string GetExtensionName(const std::u16string& path) = 0;
    virtual std::u16string GetParentFolderName(const std::u16string& path) = 0;

    /// The full path, `.` and `..` resolved, without trailing `\` except at a drive's root.
    virtual std::u16string GetAbsolutePathName(const std::u16string& path) = 0;
};

} // namespace tessaly
