#pragma once

#include "ravikit/text/Problem.h"
#include "ravikit/xml/Tree.h"
#include "ravikit/xml/declarations/Declarations.h"

#include <optional>
#include <string>
#include <string_view>

/// The two forms of a deck: its markup, and the HTML page of the plain view. docs/conversion.md
/// says how nothing is lost between them.
namespace ravikit {

/// `text`, a deck or a single card, as the inside of an HTML page. `known` are the entities that
/// the text may use without declaring them (a DTD's).
///
/// `strict` refuses text that is not well-formed, and a root that is neither `wml` nor `card`; it
/// then gives nothing and says in `problems` why, with offsets in `text`. In a single card a
/// reference that nobody declares is no fault, since the deck that it was taken from may declare
/// it. Without `strict` it never fails.
std::optional<std::u16string> markupToPlain(const std::u16string& text, bool strict,
                                            const Declarations* known, Problems& problems);
/// The same of a text that has been parsed.
std::optional<std::u16string> markupToPlain(const Tree& tree, bool strict, Problems& problems);

/// `page`, the HTML of a page or of its body, as markup: what the page took over from a
/// deck and still shows comes back in the deck's own letters, all else is written as valid WML.
///
/// Gives nothing and says in `problems` why (offsets in `page`), if the HTML is nested or broken
/// beyond what can be read, and, if `strict`, also if something on the page has no place in a deck
/// and would have to be dropped.
std::optional<std::u16string> plainToMarkup(std::u16string_view page, bool strict,
                                            const Declarations* known, Problems& problems);

} // namespace ravikit
