#include "platform/runtime/FileReplacement.h"

#include "platform/files/FileErrors.h"
#include "platform/files/FolderSearch.h"
#include "util/Attempt.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <optional>

namespace tessaly {

namespace {

namespace fs = std::filesystem;

/// True if `file` is there; it can then be written.
bool isWritableFile(const std::string& file) {
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0) {
        return false;
    }
    FileHandle::forWriting(file, false).close();
    return true;
}

/// A new file beside `target`, of a name that is not derived from it: that one may be as long as a
/// name can be. `path` gets its path.
FileHandle makeBeside(const std::string& target, std::string& path) {
    static int number = 0;
    for (;;) {
        const std::string name =
            ".tessaly-" + std::to_string(getpid()) + '-' + std::to_string(++number) + ".new";
        path = (fs::path(target).parent_path() / name).string();
        std::optional<FileHandle> made;
        const auto failed = attempt([&] { made = FileHandle::forWriting(path, true); });
        if (!failed) {
            return std::move(*made);
        }
        if (failed->code() != FailureCode::FileExists) { // of a process that was stopped half-way
            throw Failure(*failed);
        }
    }
}

/// Gives `to` the permissions and, where that is allowed, the owner of `from`.
void keepAccess(const std::string& from, const std::string& to) {
    struct stat old = {};
    if (stat(from.c_str(), &old) != 0) {
        failByErrno();
    }
    const bool sameOwner = chown(to.c_str(), old.st_uid, old.st_gid) == 0;
    const mode_t bits = old.st_mode & (sameOwner ? 07777U : 0777U);
    if (chmod(to.c_str(), bits) != 0) {
        failByErrno();
    }
}

} // namespace

std::string targetOfLinks(const std::string& file) {
    constexpr int mostLinks = 40; // as many as the system follows
    fs::path target = file;
    std::error_code failed;
    for (int i = 0; i < mostLinks && fs::is_symlink(fs::symlink_status(target, failed)); ++i) {
        target = target.parent_path() / fs::read_symlink(target, failed);
    }
    return target.string();
}

FileReplacement::FileReplacement(const std::string& file)
    : m_target(targetOfLinks(file))
    , m_replaces(isWritableFile(m_target))
    , m_made(makeBeside(m_target, m_temporary)) {
    if (m_replaces) {
        const auto failed = attempt([&] { keepAccess(m_target, m_temporary); });
        if (failed) {
            unlink(m_temporary.c_str());
            throw Failure(*failed);
        }
    }
}

FileReplacement::~FileReplacement() {
    if (!m_temporary.empty()) {
        unlink(m_temporary.c_str());
    }
}

void FileReplacement::commit() {
    if (m_replaces) {
        m_made.sync(); // or a sudden end of the system could leave neither the old nor the new one
    }
    m_made.close();
    const NewEntry entry(m_target);
    if (std::rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        failByErrno();
    }
    entry.made();
    m_temporary.clear();
}

} // namespace tessaly
