#pragma once

#include "ravikit/convert/Elements.h"

#include <string>
#include <string_view>
#include <vector>

namespace ravikit {

/// Appends `text` as characters of an element, or of an attribute's value in double quotes. What
/// XML has no place for becomes U+FFFD, a control nothing; false if there was such a unit.
bool appendCharacters(std::u16string& out, std::u16string_view text, bool isValue = false);

/// An attribute that is to differ from the source's; of two of one name the first counts. `remove`
/// takes it away.
struct AttributeChange {
    std::u16string name;
    std::u16string value;
    bool remove = false;
    bool isOfLine = false; ///< only for the line of text that is written
};
using AttributeChanges = std::vector<AttributeChange>;

/// An element to be opened.
struct Opening {
    Element element = Element::Unknown;
    Tree::Id source = Tree::none; ///< its tags are copied from here
    bool isCopy = false;          ///< without its ids, which stand elsewhere already
    AttributeChanges changes = {};
    std::u16string tag = {};  ///< the start tag of one without a source; `<name>` if empty
    std::u16string task = {}; ///< of an anchor: what every piece of it needs that has none
};

/// The tags of `opening`. `tree` is the deck that it is copied from, or null. `keepsSlash`: one
/// that is an empty-element tag there is one here.
std::u16string startTag(const Tree* tree, const Opening& opening, bool isCopy, bool keepsSlash);
std::u16string endTag(const Tree* tree, const Opening& opening);

/// The line end and blanks before a child of `id`: as its first child that begins a line has
/// them, or else one step deeper than the element itself; empty if its children stand side by side.
std::u16string childIndentation(const Tree& tree, Tree::Id id);

} // namespace ravikit
