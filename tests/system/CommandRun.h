#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

/// Runs the command as a shell would, and looks at what it left.
namespace system_test {

struct Outcome {
    int status = 0;
    std::string out;
};

/// `arguments` behind `program`, in `folder`, without a terminal. Standard error goes along if
/// `errors`.
inline Outcome runIn(const std::string& folder, const std::string& arguments, bool errors = false,
                     const std::string& program = TESSALY_COMMAND) {
    const std::string line = "cd '" + folder + "' && " + program + ' ' + arguments +
                             (errors ? " 2>&1" : " 2>/dev/null") + " </dev/null";
    FILE* pipe = popen(line.c_str(), "r");
    Outcome outcome;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe)) {
        outcome.out.append(buffer.data(), count);
    }
    outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
}

inline bool holds(const Outcome& outcome, const std::string& text) {
    return outcome.out.find(text) != std::string::npos;
}

inline std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace system_test
