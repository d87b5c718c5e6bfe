#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace convert_test {

struct MadePage {
    std::u16string html;
    bool isOfValidDeck = true; ///< what it was made from, if anything
};

/// A page from bytes: one of a deck, or none, into which tags and texts were put and out of which
/// some were taken, doubled or moved. The same bytes give the same page.
MadePage makePage(const std::uint8_t* data, std::size_t size);

} // namespace convert_test
