#pragma once

#include "platform/files/FileHandle.h"

#include <string>
#include <string_view>

namespace tessaly {

/// A new file that takes the place of `file` in one step, once it is whole: until then, and after
/// any failure, `file` is what it was. It is written beside the file, keeps the old one's
/// permissions and, as far as that is allowed, its owner; a symbolic link stays one. Paths are the
/// system's.
class FileReplacement {
public:
    /// Fails where `file` could not be written in place either, and where its folder takes no new
    /// file: FileHandle says how.
    explicit FileReplacement(const std::string& file);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    FileReplacement(FileReplacement&&) = delete;
    FileReplacement& operator=(FileReplacement&&) = delete;

    void write(std::string_view bytes) { m_made.write(bytes); }

    /// Puts the new file in place. To be called once; without it the new file goes again.
    void commit();

private:
    std::string m_target;
    std::string m_temporary;
    bool m_replaces = false;
    FileHandle m_made;
};

/// The file that `file` leads to through symbolic links, also where nothing is there yet.
std::string targetOfLinks(const std::string& file);

} // namespace tessaly
