#include "platform/runtime/RegistryFile.h"

#include "platform/files/FileErrors.h"
#include "platform/files/FileHandle.h"
#include "platform/runtime/FileReplacement.h"
#include "platform/runtime/RuntimeFailure.h"
#include "util/Attempt.h"

#include <filesystem>
#include <utility>

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

fs::path folderOf(const std::string& file) {
    const fs::path folder = fs::path(targetOfLinks(file)).parent_path();
    return folder.empty() ? "." : folder;
}

void check(const std::error_code& failed) {
    if (failed) {
        throw failureOf(failed.value());
    }
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
        FileReplacement made(file);
        made.write(text);
        made.commit();
    });
}

void removeRegistryFile(const std::string& file) {
    doTo(file, "Cannot remove the class registry", [&] {
        std::error_code failed;
        fs::remove(file, failed);
        check(failed);
    });
}

FolderLock lockRegistry(const std::string& file) {
    std::optional<FolderLock> lock;
    doTo(file, "Cannot lock the folder of the class registry", [&] {
        std::error_code failed;
        fs::create_directories(folderOf(file), failed);
        check(failed);
        lock = FolderLock::wait(folderOf(file));
    });
    return std::move(*lock);
}

} // namespace tessaly
