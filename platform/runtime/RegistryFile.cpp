#include "platform/runtime/RegistryFile.h"

#include "platform/FileErrors.h"
#include "platform/FileHandle.h"
#include "platform/runtime/RuntimeFailure.h"
#include "util/Attempt.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace tessaly {

namespace {

namespace fs = std::filesystem;

/// Runs `step`; a failure of it ends with what was to be done to `file`.
template <class Step>
void doTo(const std::string& file, const char* what, Step&& step) {
    if (const auto failure = attempt(step)) {
        throw runtimeFailure(failure->code(), what, file, failure->description());
    }
}

/// The file that `file` leads to through symbolic links.
fs::path targetOf(const std::string& file) {
    std::error_code failed;
    fs::path target = fs::canonical(file, failed);
    return failed ? fs::path(file) : target;
}

fs::path folderOf(const std::string& file) {
    const fs::path folder = targetOf(file).parent_path();
    return folder.empty() ? "." : folder;
}

void check(const std::error_code& failed) {
    if (failed) {
        throw failureOf(failed.value());
    }
}

/// The folder, open and locked.
int lockFolder(const fs::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        failByErrno();
    }
    while (::flock(descriptor, LOCK_EX) != 0) {
        if (errno != EINTR) {
            const int error = errno;
            ::close(descriptor);
            throw failureOf(error);
        }
    }
    return descriptor;
}

} // namespace

std::optional<std::string> readRegistryFile(const std::string& file) {
    std::optional<std::string> text;
    doTo(file, "Cannot read the class registry", [&] {
        std::error_code failed;
        const bool isThere = fs::exists(file, failed);
        check(failed);
        if (isThere) {
            text = FileHandle::forReading(file).readAll();
        }
    });
    return text;
}

void replaceRegistryFile(const std::string& file, const std::string& text) {
    doTo(file, "Cannot write the class registry", [&] {
        const fs::path target = targetOf(file);
        const fs::path temporary = target.string() + ".new";
        std::error_code failed;
        const auto replace = attempt([&] {
            fs::remove(temporary, failed); // of a process that was stopped half-way
            FileHandle made = FileHandle::forWriting(temporary, true);
            if (fs::exists(target)) {
                fs::permissions(temporary, fs::status(target).permissions());
            }
            made.write(text);
            made.sync();
            made.close();
            fs::rename(temporary, target, failed);
            check(failed);
        });
        if (replace) {
            fs::remove(temporary, failed);
            throw Failure(*replace);
        }
    });
}

void removeRegistryFile(const std::string& file) {
    doTo(file, "Cannot remove the class registry", [&] {
        std::error_code failed;
        fs::remove(file, failed);
        check(failed);
    });
}

RegistryLock::RegistryLock(const std::string& file) {
    doTo(file, "Cannot lock the folder of the class registry", [&] {
        std::error_code failed;
        fs::create_directories(folderOf(file), failed);
        check(failed);
        m_folder = lockFolder(folderOf(file));
    });
}

RegistryLock::~RegistryLock() {
    ::close(m_folder);
}

} // namespace tessaly
