#pragma once

#include "apps/cli/ProjectCommands.h"

#include <functional>
#include <memory>

namespace CLI {
class App;
}

namespace cli {

/// Declares the commands that write projects. The result, called once the command line has been
/// parsed, runs the one that was named and gives its status, or nothing if it was another command.
std::function<std::optional<ExitStatus>(const Printer&)> addProjectCommands(CLI::App& app);

} // namespace cli
