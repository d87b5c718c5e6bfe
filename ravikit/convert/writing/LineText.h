#pragma once

#include "ravikit/xml/Tree.h"

#include <string>
#include <string_view>
#include <utility>

namespace ravikit {

/// A piece of a line of text, put together from slices of the source and new characters: what comes
/// out of a CDATA section gets the marks of one.
class LineText {
public:
    /// Appends a slice that begins in `section` of the source, 0 if in none, and ends in
    /// `endSection`.
    void copy(std::u16string_view slice, Tree::Id section, Tree::Id endSection);
    /// Appends markup that stands in no section.
    void write(std::u16string_view markup) { copy(markup, 0, 0); }
    /// Appends characters to the section that was copied from last; false, with nothing appended,
    /// if there is none or if they cannot stand in one.
    bool writeInSection(std::u16string_view characters);

    Tree::Id section() const { return m_section; }
    bool isEmpty() const { return m_text.empty(); }
    /// The text, with the end of its last section; nothing is left.
    std::u16string take();

private:
    std::u16string m_text;
    Tree::Id m_section = 0;
};

} // namespace ravikit
