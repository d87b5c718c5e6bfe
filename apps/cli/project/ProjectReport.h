#pragma once

#include "apps/cli/session/Session.h"

#include <string>

namespace cli {

/// What a project holds, as JSON. `file` is its project file as the person would name it.
void printProjectJson(tessaly::clProject& project, const std::string& file, const Printer& printer);

} // namespace cli
