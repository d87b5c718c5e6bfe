#include "platform/files/FileHandle.h"

#include "platform/files/FileErrors.h"
#include "platform/files/FileLookup.h"
#include "platform/files/FolderSearch.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace tessaly {

namespace {

constexpr std::size_t readStep = 1U << 16U;
constexpr std::size_t largestFile = std::numeric_limits<std::int32_t>::max();
constexpr int neverWait = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

void requireFile(const struct stat& status, mode_t permission, FailureCode otherwise) {
    if (!S_ISREG(status.st_mode)) {
        throw Failure(otherwise);
    }
    if ((status.st_mode & permission) == 0) {
        throw Failure(FailureCode::PermissionDenied);
    }
}

/// How many bytes were read; 0 at the end.
std::size_t readSome(int descriptor, char* to, std::size_t size) {
    for (;;) {
        const ssize_t count = ::read(descriptor, to, size);
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR) {
            failByErrno();
        }
    }
}

} // namespace

FileHandle FileHandle::forReading(const std::string& path) {
    // Looked at first: opening a device can already set something off.
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        failByErrno();
    }
    return forReading(path, status);
}

FileHandle FileHandle::forReading(const std::string& path, const struct stat& known) {
    requireFile(known, S_IRUSR, FailureCode::FileNotFound);
    FileHandle file(open(path.c_str(), O_RDONLY | neverWait));
    if (!file.isOpen()) {
        failByErrno();
    }
    const struct stat opened = file.status();
    requireFile(opened, S_IRUSR, FailureCode::FileNotFound);
    file.m_sizeAtOpening = static_cast<std::uint64_t>(opened.st_size);
    return file;
}

FileHandle FileHandle::forWriting(const std::string& path, bool mustBeNew) {
    struct stat status = {};
    const bool isThere = stat(path.c_str(), &status) == 0;
    if (isThere && !mustBeNew) {
        requireFile(status, S_IWUSR, FailureCode::PermissionDenied);
    } else if (!isThere) {
        requireWritableFolderOf(path);
    }
    const NewEntry entry(path);
    const int flags = O_WRONLY | O_CREAT | (mustBeNew ? O_EXCL : 0) | neverWait;
    FileHandle file(open(path.c_str(), flags, 0666));
    if (!file.isOpen()) {
        failByErrno(FailureCode::PathNotFound);
    }
    if (!isThere) {
        entry.made();
    }
    requireFile(file.status(), S_IWUSR, FailureCode::PermissionDenied);
    return file;
}

FileHandle::~FileHandle() {
    if (isOpen()) {
        ::close(m_descriptor);
    }
}

std::string FileHandle::readAll() {
    std::string bytes;
    std::size_t length = 0;
    for (std::size_t room = m_sizeAtOpening + 1;; room = std::max(readStep, length / 2)) {
        if (room > largestFile - length) {
            throw Failure(FailureCode::OutOfMemory);
        }
        bytes.resize(length + room);
        while (length < bytes.size()) {
            const std::size_t count =
                readSome(m_descriptor, bytes.data() + length, bytes.size() - length);
            if (count == 0) {
                bytes.resize(length);
                return bytes;
            }
            length += count;
        }
    }
}

bool FileHandle::read(std::string& buffer) {
    buffer.resize(readStep);
    buffer.resize(readSome(m_descriptor, buffer.data(), buffer.size()));
    return !buffer.empty();
}

void FileHandle::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            failByErrno();
        }
    }
}

void FileHandle::seekToEnd() {
    if (lseek(m_descriptor, 0, SEEK_END) < 0) {
        failByErrno();
    }
}

void FileHandle::truncate() {
    if (ftruncate(m_descriptor, 0) != 0) {
        failByErrno();
    }
}

void FileHandle::sync() {
    if (fsync(m_descriptor) != 0) {
        failByErrno();
    }
}

struct stat FileHandle::status() const {
    struct stat result = {};
    if (fstat(m_descriptor, &result) != 0) {
        failByErrno();
    }
    return result;
}

void FileHandle::close() {
    // The descriptor is gone even where closing fails.
    if (isOpen() && ::close(std::exchange(m_descriptor, -1)) != 0 && errno != EINTR) {
        failByErrno();
    }
}

} // namespace tessaly
