#pragma once

#include "ravikit/convert/Elements.h"

#include <cstdint>
#include <vector>

namespace ravikit {

/// The code points that stand for more than themselves when texts are compared.
inline constexpr char32_t breakAtom = 0x110000; ///< a `br`
inline constexpr char32_t removedAtom =
    0x110001; ///< where elements stood that the page has no more

/// Where a paragraph begins that the page has joined to the one before it.
inline constexpr char32_t jointAtom = 0x110002;

/// Added to a blank of the page that counts as it is.
inline constexpr char32_t exactBlank = 0x110010;

/// A character of the source as the page shows it, with where it is written.
struct SourceAtom {
    char32_t unit = 0; ///< a UTF-16 unit, a space for any number of blanks, or one of the above
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    bool glued = false; ///< written in one with the character before, as in a reference to several
    Tree::Id section = 0;    ///< the CDATA section in which it begins; 0 if it does in none
    Tree::Id endSection = 0; ///< the one in which it ends
};

/// What stands in the source and isn't seen: a comment, a `timer`, blanks at the edge of a block.
struct Unseen {
    std::size_t before = 0; ///< stands before this atom
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    bool isBlank = false;
    bool isElement = false;
    Tree::Id section = 0; ///< as in SourceAtom
    Tree::Id endSection = 0;
};

/// What a page can change between two elements that it shows both, or at an element's edge.
struct Gap {
    std::vector<SourceAtom> atoms;
    std::vector<Unseen> unseen;

    void clear() {
        atoms.clear();
        unseen.clear();
    }
};

/// How blanks count where a gap is.
struct GapPlace {
    bool exact = false;      ///< as in `pre`: each counts
    bool noBlanks = false;   ///< where only elements belong: none counts
    bool edgeBefore = false; ///< none counts at the begin
    bool edgeAfter = false;  ///< none counts at the end
};

/// Reads the nodes [first, behind) of the source, siblings all, into `gap`. Of shown elements among
/// them, and what is between them, only the fact remains.
void readGap(const Tree& tree, const Outline& outline, Tree::Id first, Tree::Id behind,
             const GapPlace& place, Gap& gap);

} // namespace ravikit
