#pragma once

#include "apps/cli/session/Session.h"

#include <string>
#include <vector>

namespace cli {

enum class CardForm { Text, Plain, Markup };

/// The commands of `tessaly`. Each prints to standard output, as JSON if `json` is set, and gives
/// the exit status.
/// Of a project or, if `file` is one, of a deck.
ExitStatus info(const std::string& file, bool json, const Printer& printer);
/// `inputName`: what a deck from standard input is called. `views`: beside the verdict, whether
/// each well-formed deck survives the way to the page and back.
ExitStatus check(const std::vector<std::string>& paths, const std::string& inputName, bool views,
                 bool json, const Printer& printer);
ExitStatus cards(const std::string& path, const std::string& deckName, CardForm form, bool json,
                 const Printer& printer);

/// Turns the deck or page in `file` (`-` is standard input) into the other form, into the file
/// `out` or, if that is empty, to standard output.
ExitStatus convert(const std::string& file, bool toPlain, bool strict, const std::string& out);

/// How often each of the tags of `list`, joined by commas, stands in the decks.
ExitStatus tags(const std::string& list, const std::vector<std::string>& paths, bool json,
                const Printer& printer);

} // namespace cli
