#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace cli {

/// Prints what the command line has wrong, in words of our own, or the help or the version that it
/// asks for, and gives the exit status.
int reportUsage(const CLI::App& app, const CLI::ParseError& error);

/// Prints the help of the command `topic`, of all if it is empty, and gives the exit status.
int printHelp(CLI::App& app, const std::string& topic);

/// A check for an option that takes one of `words`.
CLI::Validator oneOf(const std::vector<std::string>& words);

} // namespace cli
