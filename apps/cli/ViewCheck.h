#pragma once

#include "apps/cli/Session.h"

#include <optional>
#include <string>

namespace cli {

/// Where a deck did not survive the way to the page and back.
struct Loss {
    std::size_t line = 1; ///< from 1
    std::size_t column = 1;
    std::string reason;
};

/// Takes the deck's text through a document with headless controls to the page and back. Nothing if
/// every unit survived, and for a deck without content, which the page shows as a blank one.
std::optional<Loss> switchThereAndBack(const Deck& deck);

} // namespace cli
