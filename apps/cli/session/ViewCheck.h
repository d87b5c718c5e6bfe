#pragma once

#include "apps/cli/session/Session.h"

#include <cstddef>
#include <string>

namespace cli {

/// What the way to the page and back did to a deck.
struct Switched {
    enum class Outcome {
        Whole,         ///< every byte of its file came back
        OtherEncoding, ///< every character came back; the file is in another encoding than UTF-8
        Lost,          ///< something did not come back
        Blank,         ///< there was nothing to be shown
        NotShown,      ///< it is not well-formed
    };
    Outcome outcome = Outcome::NotShown;
    std::size_t line = 1; ///< of what was lost, from 1
    std::size_t column = 1;
    std::string reason = {};
};

/// Takes the deck's text through a document with headless controls to the page and back, and
/// compares what comes back with the deck's file.
Switched switchThereAndBack(const Deck& deck);

} // namespace cli
