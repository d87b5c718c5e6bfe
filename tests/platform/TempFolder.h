#pragma once

#include "platform/files/PathName.h"
#include "tests/support/File.h"
#include "util/Attempt.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace support {

/// The number of the failure that `call` ends with, 0 for none.
template <class Call>
int failureOf(Call&& call) {
    const auto failed = tessaly::attempt([&] { call(); });
    return failed ? failed->number() : 0;
}

/// A new empty folder, which goes with all that it holds.
class TempFolder {
public:
    TempFolder() {
        std::string name = "/tmp/tessaly-XXXXXX";
        m_path = mkdtemp(name.data());
    }
    ~TempFolder() { std::filesystem::remove_all(m_path); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string posix(const std::string& name = "") const {
        return name.empty() ? m_path : m_path + '/' + name;
    }
    std::u16string path(const std::string& name = "") const {
        return tessaly::toComponentPath(posix(name));
    }

    /// Makes the folders in which the file lies as well.
    void write(const std::string& name, const std::string& bytes) const {
        std::filesystem::create_directories(std::filesystem::path(posix(name)).parent_path());
        std::ofstream(posix(name), std::ios::binary) << bytes;
    }
    std::string read(const std::string& name) const { return bytesOf(posix(name)); }
    void folder(const std::string& name) const { std::filesystem::create_directories(posix(name)); }
    void mode(const std::string& name, mode_t bits) const { ::chmod(posix(name).c_str(), bits); }
    bool has(const std::string& name) const { return std::filesystem::exists(posix(name)); }

private:
    std::string m_path;
};

} // namespace support
