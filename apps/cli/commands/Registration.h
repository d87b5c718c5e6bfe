#pragma once

#include "apps/cli/session/Session.h"

#include <functional>
#include <optional>

namespace CLI {
class App;
}

namespace cli {

/// Declares `register` and `unregister`, which have the loadable library enter its classes into the
/// class registry or take them out. The result, called once the command line has been parsed, runs
/// the one that was named and gives its status, or nothing if it was another command.
std::function<std::optional<ExitStatus>(const Printer&)> addRegistration(CLI::App& app);

} // namespace cli
