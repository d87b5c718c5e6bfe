#pragma once

#include "external/FileSystemObject.h"
#include "platform/files/FileHandle.h"

#include <memory>
#include <string>

namespace tessaly {

/// A file by its path of the system, looked at again by each member.
class PosixFile : public File {
public:
    explicit PosixFile(std::string path)
        : m_path(std::move(path)) {}

    std::int32_t Attributes() override;

    /// When the file was made; when it was last written, on a file system that does not know.
    Date DateCreated() override;
    Date DateLastModified() override;

    std::shared_ptr<TextStream> OpenAsTextStream(IOMode mode, std::int32_t format) override;

private:
    std::string m_path;
};

/// A stream over the file at `path`, a path of the system; `make` makes the file first. Fails as
/// FileHandle does.
std::shared_ptr<TextStream> openStream(const std::string& path, IOMode mode, std::int32_t format,
                                       bool make);

} // namespace tessaly
