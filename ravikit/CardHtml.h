#pragma once

#include "ravikit/Tree.h"

#include <optional>
#include <string>

namespace ravikit {

/// The cards of `tree` as the inside of an HTML page for reading: a `div` a card, each with its
/// title, in it the texts, pictures' names, tables and controls. Nothing of it loads, runs or leads
/// anywhere, and no text is lost.
///
/// `strict` gives none, with the reasons in `problems`, for a text that is not well-formed, and for
/// a root that is neither a deck nor a card. In a single card a reference that nobody declares is
/// no fault, since the deck that it was taken from may declare it; it is shown as it is written.
std::optional<std::u16string> cardHtml(const Tree& tree, bool strict, Problems& problems);

} // namespace ravikit
