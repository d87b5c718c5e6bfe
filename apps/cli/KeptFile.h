#pragma once

#include <string>

namespace cli {

/// What a file holds before it is written, to be put back should that fail half-way.
class KeptFile {
public:
    explicit KeptFile(std::string file); // a path of the system

    /// True if the file holds that again, or still.
    bool putBack() const;

private:
    std::string m_file;
    std::string m_bytes;
};

} // namespace cli
