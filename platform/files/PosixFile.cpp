#include "platform/files/PosixFile.h"

#include "platform/files/FileErrors.h"
#include "platform/files/FileLookup.h"
#include "platform/files/LocalDate.h"
#include "platform/files/TextStreams.h"
#include "util/Failure.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <ctime>
#include <utility>

namespace tessaly {

namespace {

struct stat statusOf(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        failByErrno();
    }
    return status;
}

} // namespace

std::int32_t PosixFile::Attributes() {
    return isReadOnly(statusOf(m_path)) ? readOnly : 0;
}

Date PosixFile::DateCreated() {
    struct statx status = {};
    if (statx(AT_FDCWD, m_path.c_str(), 0, STATX_BTIME | STATX_MTIME, &status) != 0) {
        failByErrno();
    }
    const bool known = (status.stx_mask & STATX_BTIME) != 0;
    return localDate(known ? status.stx_btime.tv_sec : status.stx_mtime.tv_sec);
}

Date PosixFile::DateLastModified() {
    return localDate(statusOf(m_path).st_mtime);
}

std::shared_ptr<TextStream> PosixFile::OpenAsTextStream(IOMode mode, std::int32_t format) {
    statusOf(m_path); // opening for writing must not make a file that has gone
    return openStream(m_path, mode, format, false);
}

std::shared_ptr<TextStream> openStream(const std::string& path, IOMode mode, std::int32_t format,
                                       bool make) {
    if (format != formatAnsi) {
        throw Failure(FailureCode::InvalidArgument);
    }
    if (make) {
        FileHandle::forWriting(path, false).close();
    }
    if (mode == IOMode::ForReading) {
        return makeReadingStream(FileHandle::forReading(path));
    }
    FileHandle file = FileHandle::forWriting(path, false);
    if (mode == IOMode::ForAppending) {
        file.seekToEnd();
    } else {
        file.truncate();
    }
    return makeWritingStream(std::move(file));
}

} // namespace tessaly
