#include "apps/cli/KeptFile.h"

#include <fstream>
#include <iterator>
#include <utility>

namespace cli {

namespace {

std::string bytesOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

KeptFile::KeptFile(std::string file)
    : m_file(std::move(file))
    , m_bytes(bytesOf(m_file)) {}

bool KeptFile::putBack() const {
    if (bytesOf(m_file) != m_bytes) {
        std::ofstream(m_file, std::ios::binary).write(m_bytes.data(), std::ssize(m_bytes));
    }
    return bytesOf(m_file) == m_bytes;
}

} // namespace cli
