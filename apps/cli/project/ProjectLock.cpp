// Several commands at once: each keeps the folders that it changes to itself.

#include "apps/cli/project/ProjectWork.h"

#include "platform/files/PathName.h"
#include "util/Attempt.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

namespace cli {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds pause(10);
constexpr int quietPauses = 100;

/// The folder in whatever letters it is written, as it stands on the disk; empty if none is there.
std::string onDisk(const std::string& folder) {
    std::string path;
    tessaly::attempt([&] {
        const auto full = tessaly::absolutePathOf(tessaly::toComponentPath(folder));
        if (const tessaly::Found found = tessaly::lookUp(full); found.isFolder()) {
            std::error_code failed;
            path = fs::canonical(found.path, failed).string();
        }
    });
    return path;
}

/// The folders that stand for `files`, none of them twice.
std::set<std::string> foldersOf(const std::vector<std::string>& files) {
    std::set<std::string> folders;
    for (const std::string& file : files) {
        const std::string folder = folderOf(file);
        const std::string there = onDisk(folder);
        folders.insert(there.empty() ? onDisk(folderOf(folder)) : there);
    }
    folders.erase("");
    return folders;
}

} // namespace

/// False while another command has the folder. One that cannot be locked at all counts as free.
bool ProjectWork::tryLock(const std::string& folder) {
    bool free = true;
    tessaly::attempt([&] {
        auto lock = tessaly::FolderLock::tryNow(folder);
        free = lock && lock->isOf(folder);
        if (free) {
            m_locks.push_back(std::move(*lock));
        }
    });
    return free;
}

bool ProjectWork::lock(const std::vector<std::string>& files) {
    for (int pauses = 0;; ++pauses) {
        m_locks.clear(); // whoever has one folder and waits for another would keep others waiting
        const std::set<std::string> folders = foldersOf(files);
        const bool all = std::all_of(folders.begin(), folders.end(),
                                     [&](const std::string& folder) { return tryLock(folder); });
        if (all && folders == foldersOf(files)) { // which another command may have made or removed
            return true;
        }
        if (pauses == quietPauses) {
            std::cerr << "tessaly: " << shownPath(files.front())
                      << ": waiting for another command to end\n";
        }
        std::this_thread::sleep_for(pause);
        if (watch().interrupt().isRequested()) {
            refuse(files.front(), "interrupted, and left as it was");
            return false;
        }
    }
}

} // namespace cli
