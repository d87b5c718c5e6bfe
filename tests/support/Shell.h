#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace support {

struct Outcome {
    int status = 0;
    std::string out;
};

/// Runs a line of the shell.
inline Outcome shell(const std::string& line) {
    FILE* pipe = popen(line.c_str(), "r");
    Outcome outcome;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe)) {
        outcome.out.append(buffer.data(), count);
    }
    outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
}

} // namespace support
