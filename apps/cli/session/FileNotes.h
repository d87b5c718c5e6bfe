#pragma once

#include "apps/cli/session/Session.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// The bytes of a deck's file; none if it cannot be read any more.
std::optional<std::string> bytesOf(const Deck& deck);

/// What was decided about the encoding of a file.
std::vector<Note> notesIn(const tessaly::FileText& file);

/// The same of a deck that the component has read.
std::vector<Note> notesOf(const Deck& deck);

} // namespace cli
