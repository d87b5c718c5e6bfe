#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// Writes decks as people write them: most elements of WML, some references, comments, CDATA and
/// letters beyond ASCII, indented, in cards of about a kilobyte. Valid, in UTF-8, and the same for
/// the same seed.
///
/// The deck has at least `cards` cards and at least `bytes` bytes. `doctype` is what stands after
/// `<!DOCTYPE wml `.
std::string makeDeck(unsigned seed, std::size_t cards, std::size_t bytes,
                     const std::string& doctype);

} // namespace bench
