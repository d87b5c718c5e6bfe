#include "platform/files/Drives.h"

#include "platform/files/FileErrors.h"
#include "util/Failure.h"
#include "util/Lasting.h"
#include "util/LetterCase.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <system_error>

namespace tessaly {

namespace {

/// The folder of each letter, empty where none is mounted.
std::string& entryOf(char16_t letter) {
    static auto& folders = lasting<std::array<std::string, 26>>();
    if (!isDriveLetter(letter)) {
        throw Failure(FailureCode::InvalidArgument);
    }
    return folders[static_cast<std::size_t>(toLower(letter) - u'a')];
}

} // namespace

void mountDrive(char16_t letter, const std::string& folder) {
    std::string& entry = entryOf(letter);
    if (folder.empty()) {
        throw Failure(FailureCode::InvalidArgument);
    }
    std::error_code failed;
    const std::filesystem::path absolute = std::filesystem::absolute(folder, failed);
    if (failed) {
        throw failureOf(failed.value(), FailureCode::PathNotFound);
    }
    entry = absolute.string();
}

void unmountDrive(char16_t letter) {
    entryOf(letter).clear();
}

std::string driveFolder(char16_t letter) {
    const std::string& folder = entryOf(letter);
    if (folder.empty()) {
        throw Failure(FailureCode::DiskNotReady);
    }
    return folder;
}

bool isDriveLetter(char16_t unit) {
    return toLower(unit) >= u'a' && toLower(unit) <= u'z';
}

} // namespace tessaly
