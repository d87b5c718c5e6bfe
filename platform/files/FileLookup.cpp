#include "platform/files/FileLookup.h"

#include "platform/files/FileErrors.h"
#include "platform/files/FolderSearch.h"
#include "platform/files/PathName.h"
#include "platform/files/RemovedNames.h"
#include "platform/files/TextCodec.h"

#include <cerrno>
#include <cstddef>
#include <optional>
#include <string_view>

namespace tessaly {

namespace {

bool isMissing(int error) {
    return error == ENOENT || error == ENOTDIR;
}

/// Looks at `path`, links followed; False if nothing is there. Fails where it may not look.
bool look(const std::string& path, struct stat& status) {
    if (stat(path.c_str(), &status) == 0) {
        return true;
    }
    if (!isMissing(errno)) {
        failByErrno();
    }
    return false;
}

/// The path of the entry that stands for `name` in `folder`; none if there is none.
std::optional<std::string> step(const std::string& folder, const std::u16string& name) {
    struct stat status = {};
    const std::string exact = joinPosix(folder, encodeUtf8(name));
    if (look(exact, status)) {
        return exact;
    }
    if (wasRemoved(exact)) {
        return std::nullopt;
    }
    const auto other = findIgnoringCase(folder, name);
    return other ? std::optional(joinPosix(folder, *other)) : std::nullopt;
}

bool isFolder(const std::string& path) {
    struct stat status = {};
    return look(path.empty() ? "." : path, status) && S_ISDIR(status.st_mode);
}

/// Goes from name to name as far as they are there.
void walk(const PathParts& parts, Found& found) {
    found.path = startOf(parts);
    if (parts.drive != 0 && !isFolder(found.path)) {
        throw Failure(FailureCode::DiskNotReady);
    }
    for (std::size_t i = 0; i < parts.names.size(); ++i) {
        if (!isFolder(found.path)) {
            found.state = Found::State::FolderMissing;
            return;
        }
        const auto next = step(found.path, parts.names[i]);
        if (!next) {
            const bool last = i + 1 == parts.names.size();
            found.path = joinPosix(found.path, encodeUtf8(parts.names[i]));
            found.state = last ? Found::State::NameMissing : Found::State::FolderMissing;
            return;
        }
        found.path = *next;
    }
    found.state = look(found.path, found.status) ? Found::State::Exists : Found::State::NameMissing;
}

} // namespace

Found lookUp(const std::u16string& path) {
    const PathParts parts = splitPath(path);
    Found found;
    found.namesFolder = parts.namesFolder;
    found.path = posixPathOf(parts);
    if (look(found.path, found.status)) {
        found.state = Found::State::Exists;
    } else {
        walk(parts, found);
    }
    return found;
}

Found lookUpFile(const std::u16string& path) {
    Found found = lookUp(path);
    if (!found.isFile()) {
        throw Failure(found.state == Found::State::FolderMissing ? FailureCode::PathNotFound
                                                                 : FailureCode::FileNotFound);
    }
    return found;
}

void removed(const Found& found, const std::u16string& path) {
    nameRemoved(found.path);
    // As it was written too, where that differs: whoever removed the file writes to this name next.
    const std::string folder = found.path.substr(0, found.path.rfind('/') + 1);
    nameRemoved(folder + encodeUtf8(splitPath(path).names.back()));
}

void requireWritableFolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == path.npos ? "." : path.substr(0, slash + 1);
    struct stat status = {};
    if (stat(folder.c_str(), &status) != 0) {
        failByErrno(FailureCode::PathNotFound);
    }
    if (isReadOnly(status)) {
        throw Failure(FailureCode::PermissionDenied);
    }
}

bool isReadOnly(const struct stat& status) {
    return (status.st_mode & S_IWUSR) == 0;
}

} // namespace tessaly
