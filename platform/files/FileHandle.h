#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tessaly {

/// An open file of the system, closed at its end. The paths are the system's. Only regular files
/// open: anything else of that name fails with FileNotFound for reading, with PermissionDenied for
/// writing. No opening waits. What the file's owner may not do fails with PermissionDenied, also
/// for a user whom the system would let.
class FileHandle {
public:
    static FileHandle forReading(const std::string& path);
    /// The same where it is known already what is there.
    static FileHandle forReading(const std::string& path, const struct stat& known);

    /// Makes the file if it is missing; leaves its content. `mustBeNew`: an existing one fails with
    /// FileExists.
    static FileHandle forWriting(const std::string& path, bool mustBeNew);

    FileHandle(FileHandle&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
        , m_sizeAtOpening(other.m_sizeAtOpening) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        std::swap(m_sizeAtOpening, other.m_sizeAtOpening);
        return *this;
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle();

    bool isOpen() const { return m_descriptor >= 0; }

    /// All that stands in the file from where it was last read. A file that is too large for the
    /// component's positions fails with OutOfMemory.
    std::string readAll();

    /// The next bytes into `buffer`, as many as it holds: True if there were any.
    bool read(std::string& buffer);

    void write(std::string_view bytes);

    /// Everything written goes after what is there.
    void seekToEnd();

    /// Empties the file.
    void truncate();

    /// Returns when what was written is safe from a sudden end of the system.
    void sync();

    struct stat status() const;

    /// Closes and fails if what was written could not be kept.
    void close();

private:
    explicit FileHandle(int descriptor)
        : m_descriptor(descriptor) {}

    int m_descriptor;
    std::uint64_t m_sizeAtOpening = 0; ///< of one for reading; it may grow
};

} // namespace tessaly
