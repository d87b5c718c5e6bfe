#pragma once

#include "apps/cli/Session.h"

#include <string>
#include <vector>

namespace cli {

enum class CardForm { Text, Plain, Markup };

/// The commands of `tessaly`. Each prints to standard output, as JSON if `json` is set, and gives
/// the exit status.
ExitStatus info(const std::string& project, bool json, const Printer& printer);
ExitStatus check(const std::vector<std::string>& paths, bool json, const Printer& printer);
ExitStatus cards(const std::string& path, const std::string& deckName, CardForm form, bool json,
                 const Printer& printer);

} // namespace cli
