#include "platform/files/FolderRemoval.h"

#include "platform/files/FileErrors.h"
#include "platform/files/FileLookup.h"
#include "platform/files/PathName.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>
#include <vector>

namespace tessaly {

namespace {

/// A folder that is being emptied, and what is left in it.
struct Level {
    std::string path;
    std::vector<std::string> entries;
};

std::vector<std::string> entriesOf(const std::string& path) {
    DIR* folder = opendir(path.c_str());
    if (folder == nullptr) {
        failByErrno(FailureCode::PathNotFound);
    }
    std::vector<std::string> names;
    while (const dirent* entry = readdir(folder)) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
    }
    closedir(folder);
    return names;
}

/// Makes a folder ready to be emptied.
Level enter(std::string path, const struct stat& status, bool force) {
    if (isReadOnly(status)) {
        if (!force) {
            throw Failure(FailureCode::PermissionDenied);
        }
        if (chmod(path.c_str(), (status.st_mode & 07777) | S_IRWXU) != 0) {
            failByErrno(FailureCode::PathNotFound);
        }
    }
    std::vector<std::string> entries = entriesOf(path);
    return {std::move(path), std::move(entries)};
}

struct stat statusOf(const std::string& path) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0) {
        failByErrno();
    }
    return status;
}

void removeEntry(const std::string& path, const struct stat& status, bool force) {
    if (S_ISREG(status.st_mode) && isReadOnly(status) && !force) {
        throw Failure(FailureCode::PermissionDenied);
    }
    if (unlink(path.c_str()) != 0) {
        failByErrno();
    }
}

} // namespace

void removeFolder(const std::string& path, bool force) {
    requireWritableFolderOf(path);
    const struct stat top = statusOf(path);
    if (!S_ISDIR(top.st_mode)) {
        removeEntry(path, top, force);
        return;
    }
    std::vector<Level> levels;
    levels.push_back(enter(path, top, force));
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.entries.empty()) {
            if (rmdir(level.path.c_str()) != 0) {
                failByErrno(FailureCode::PathNotFound);
            }
            levels.pop_back();
            continue;
        }
        std::string entry = joinPosix(level.path, level.entries.back());
        level.entries.pop_back();
        const struct stat status = statusOf(entry);
        if (S_ISDIR(status.st_mode)) {
            levels.push_back(enter(std::move(entry), status, force));
        } else {
            removeEntry(entry, status, force);
        }
    }
}

} // namespace tessaly
