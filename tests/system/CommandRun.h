#pragma once

#include "support/Shell.h"
#include "tests/platform/TempFolder.h"

#include <string>

/// Runs the command as a shell would, and looks at what it left.
namespace system_test {

using support::Outcome;

/// `arguments` after `program`, in `folder`, without a terminal. Standard error goes along if
/// `errors`.
inline Outcome runIn(const std::string& folder, const std::string& arguments, bool errors = false,
                     const std::string& program = TESSALY_COMMAND) {
    return support::shell("cd '" + folder + "' && " + program + ' ' + arguments +
                          (errors ? " 2>&1" : " 2>/dev/null") + " </dev/null");
}

inline bool holds(const Outcome& outcome, const std::string& text) {
    return outcome.out.find(text) != std::string::npos;
}

} // namespace system_test
