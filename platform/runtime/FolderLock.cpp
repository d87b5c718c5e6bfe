#include "platform/runtime/FolderLock.h"

#include "platform/files/FileErrors.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tessaly {

FolderLock::FolderLock(const std::string& folder)
    : m_folder(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (m_folder < 0) {
        failByErrno();
    }
}

FolderLock::~FolderLock() {
    if (m_folder >= 0) {
        ::close(m_folder);
    }
}

/// False if another process has the lock.
bool FolderLock::lock(int how) const {
    while (::flock(m_folder, how) != 0) {
        if (errno == EWOULDBLOCK) {
            return false;
        }
        if (errno != EINTR) {
            failByErrno();
        }
    }
    return true;
}

FolderLock FolderLock::wait(const std::string& folder) {
    FolderLock waiting(folder);
    waiting.lock(LOCK_EX);
    return waiting;
}

std::optional<FolderLock> FolderLock::tryNow(const std::string& folder) {
    FolderLock trying(folder);
    return trying.lock(LOCK_EX | LOCK_NB) ? std::optional(std::move(trying)) : std::nullopt;
}

bool FolderLock::isOf(const std::string& folder) const {
    struct stat own = {};
    struct stat there = {};
    return fstat(m_folder, &own) == 0 && stat(folder.c_str(), &there) == 0 &&
           own.st_dev == there.st_dev && own.st_ino == there.st_ino;
}

} // namespace tessaly
