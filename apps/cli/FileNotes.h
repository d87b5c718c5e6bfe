#pragma once

#include "apps/cli/Session.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// What an author should hear about how a file was read; no error.
struct Note {
    std::size_t line = 1; ///< from 1
    std::size_t column = 1;
    std::string reason;
};

/// The bytes of a deck's file; none if it cannot be read any more.
std::optional<std::string> bytesOf(const Deck& deck);

/// What was decided about the encoding of the deck's file.
std::vector<Note> notesOf(const Deck& deck);

} // namespace cli
