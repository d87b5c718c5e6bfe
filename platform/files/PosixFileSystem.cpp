#include "platform/files/PosixFileSystem.h"

#include "platform/files/FileErrors.h"
#include "platform/files/FileHandle.h"
#include "platform/files/FileLookup.h"
#include "platform/files/FolderRemoval.h"
#include "platform/files/FolderSearch.h"
#include "platform/files/PathName.h"
#include "platform/files/PosixFile.h"
#include "platform/files/TextStreams.h"
#include "util/Attempt.h"
#include "util/Failure.h"

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace tessaly {

namespace {

/// lookUp of a path at which something is to stand: its folder is there.
Found lookUpPlace(const std::u16string& path) {
    Found found = lookUp(path);
    const bool fileInFolderForm = found.namesFolder && !found.isFolder();
    if (found.state == Found::State::FolderMissing || fileInFolderForm) {
        throw Failure(FailureCode::PathNotFound);
    }
    return found;
}

/// The place that a copy of `from` goes to.
Found lookUpTarget(const std::u16string& from, const std::u16string& to) {
    Found target = lookUpPlace(to);
    return target.namesFolder ? lookUpPlace(to + fileNameOf(from)) : target;
}

bool isOneFile(const Found& a, const Found& b) {
    return a.exists() && b.exists() && a.status.st_dev == b.status.st_dev &&
           a.status.st_ino == b.status.st_ino;
}

void copyContent(FileHandle from, FileHandle to) {
    to.truncate();
    std::string buffer;
    while (from.read(buffer)) {
        to.write(buffer);
    }
    to.close();
}

} // namespace

bool PosixFileSystem::FileExists(const std::u16string& path) {
    bool exists = false;
    attempt([&] { exists = lookUp(path).isFile(); });
    return exists;
}

bool PosixFileSystem::FolderExists(const std::u16string& path) {
    bool exists = false;
    attempt([&] { exists = lookUp(path).isFolder(); });
    return exists;
}

bool PosixFileSystem::isSameFile(const std::u16string& a, const std::u16string& b) {
    bool same = false;
    attempt([&] { same = isOneFile(lookUp(a), lookUp(b)); });
    return same;
}

std::shared_ptr<File> PosixFileSystem::GetFile(const std::u16string& path) {
    Found found;
    const auto failed = attempt([&] { found = lookUpFile(path); });
    if (failed) {
        const bool noSuchFile = failed->code() == FailureCode::PathNotFound ||
                                failed->code() == FailureCode::BadFileName ||
                                failed->code() == FailureCode::DiskNotReady;
        throw noSuchFile ? Failure(FailureCode::FileNotFound) : *failed;
    }
    return std::make_shared<PosixFile>(found.path);
}

std::shared_ptr<TextStream> PosixFileSystem::OpenTextFile(const std::u16string& path, IOMode mode,
                                                          bool create, std::int32_t format) {
    const Found found = lookUpPlace(path);
    if (!found.exists() && !create) {
        throw Failure(FailureCode::FileNotFound);
    }
    return openStream(found.path, mode, format, !found.exists());
}

std::shared_ptr<TextStream> PosixFileSystem::CreateTextFile(const std::u16string& path,
                                                            bool overwrite, bool unicode) {
    if (unicode) {
        throw Failure(FailureCode::InvalidArgument);
    }
    FileHandle file = FileHandle::forWriting(lookUpPlace(path).path, !overwrite);
    file.truncate();
    return makeWritingStream(std::move(file));
}

void PosixFileSystem::CopyFile(const std::u16string& from, const std::u16string& to,
                               bool overwrite) {
    const Found source = lookUpFile(from);
    const Found target = lookUpTarget(from, to);
    if (overwrite && isOneFile(source, target)) {
        return;
    }
    FileHandle reading = FileHandle::forReading(source.path);
    copyContent(std::move(reading), FileHandle::forWriting(target.path, !overwrite));
}

void PosixFileSystem::DeleteFile(const std::u16string& path, bool force) {
    const Found found = lookUpFile(path);
    requireWritableFolderOf(found.path);
    if (isReadOnly(found.status) && !force) {
        throw Failure(FailureCode::PermissionDenied);
    }
    if (unlink(found.path.c_str()) != 0) {
        failByErrno();
    }
    removed(found, path);
}

void PosixFileSystem::CreateFolder(const std::u16string& path) {
    const Found found = lookUp(path);
    if (found.exists()) {
        throw Failure(FailureCode::FileExists);
    }
    if (found.state == Found::State::FolderMissing) {
        throw Failure(FailureCode::PathNotFound);
    }
    requireWritableFolderOf(found.path);
    const NewEntry entry(found.path);
    if (mkdir(found.path.c_str(), 0777) != 0) {
        failByErrno(FailureCode::PathNotFound);
    }
    entry.made();
}

void PosixFileSystem::DeleteFolder(const std::u16string& path, bool force) {
    const Found found = lookUp(path);
    if (!found.isFolder()) {
        throw Failure(FailureCode::PathNotFound);
    }
    const auto names = splitPath(path).names;
    if (names.empty() || names.back() == u"..") {
        throw Failure(FailureCode::PermissionDenied);
    }
    removeFolder(found.path, force);
    removed(found, path);
}

std::u16string PosixFileSystem::GetFileName(const std::u16string& path) {
    return fileNameOf(path);
}

std::u16string PosixFileSystem::GetBaseName(const std::u16string& path) {
    return baseNameOf(path);
}

std::u16string PosixFileSystem::GetExtensionName(const std::u16string& path) {
    return extensionOf(path);
}

std::u16string PosixFileSystem::GetParentFolderName(const std::u16string& path) {
    return parentFolderOf(path);
}

std::u16string PosixFileSystem::GetAbsolutePathName(const std::u16string& path) {
    return absolutePathOf(path);
}

} // namespace tessaly
