#pragma once

#include <optional>
#include <string>
#include <utility>

namespace tessaly {

/// Keeps other processes from changing a folder as long as it lives, provided they ask: a lock on
/// the folder itself, which leaves no lock file and goes with the process. Paths are the system's.
class FolderLock {
public:
    /// Waits until the folder is free. Fails if it cannot be opened or locked.
    static FolderLock wait(const std::string& folder);

    /// None while another process has it. Fails like `wait`.
    static std::optional<FolderLock> tryNow(const std::string& folder);

    FolderLock(FolderLock&& other) noexcept
        : m_folder(std::exchange(other.m_folder, -1)) {}
    FolderLock& operator=(FolderLock&& other) noexcept {
        std::swap(m_folder, other.m_folder);
        return *this;
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

    /// False if another folder, or none, has that path since.
    bool isOf(const std::string& folder) const;

private:
    explicit FolderLock(const std::string& folder);

    bool lock(int how) const;

    int m_folder;
};

} // namespace tessaly
