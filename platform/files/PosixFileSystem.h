#pragma once

#include "external/FileSystemObject.h"

#include <memory>
#include <string>

namespace tessaly {

/// The file service on a POSIX system: paths as PathName.h says, names without regard to the case
/// of letters as FileLookup.h says, permissions as FileHandle.h says, text as TextCodec.h says.
/// Formats other than the single-byte one fail with InvalidArgument.
class PosixFileSystem : public FileSystemObject {
public:
    bool FileExists(const std::u16string& path) override;
    bool FolderExists(const std::u16string& path) override;
    bool isSameFile(const std::u16string& a, const std::u16string& b) override;

    /// What is no existing file fails with FileNotFound, also where its folder or its drive is
    /// missing and where no file can have such a name.
    std::shared_ptr<File> GetFile(const std::u16string& path) override;

    std::shared_ptr<TextStream> OpenTextFile(const std::u16string& path, IOMode mode, bool create,
                                             std::int32_t format) override;
    std::shared_ptr<TextStream> CreateTextFile(const std::u16string& path, bool overwrite,
                                               bool unicode) override;

    /// A `to` with a `\` at its end names the folder that takes the copy. Wildcards have no
    /// meaning. A new file gets the content alone, not the read-only attribute. Copying a file onto
    /// itself leaves it as it is.
    void CopyFile(const std::u16string& from, const std::u16string& to, bool overwrite) override;

    void DeleteFile(const std::u16string& path, bool force) override;
    void CreateFolder(const std::u16string& path) override;

    /// `force` removes read-only files and folders inside too. A root, the current folder
    /// and those above it stay: PermissionDenied.
    void DeleteFolder(const std::u16string& path, bool force) override;

    std::u16string GetFileName(const std::u16string& path) override;
    std::u16string GetBaseName(const std::u16string& path) override;
    std::u16string GetExtensionName(const std::u16string& path) override;
    std::u16string GetParentFolderName(const std::u16string& path) override;
    std::u16string GetAbsolutePathName(const std::u16string& path) override;
};

} // namespace tessaly
