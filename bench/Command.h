#pragma once

#include <string>
#include <vector>

namespace bench {

/// Runs a program to its end, its output thrown away, and gives its exit status; -1 if it did not
/// end by itself.
int runProgram(const std::vector<std::string>& words);

} // namespace bench
