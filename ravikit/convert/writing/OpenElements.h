#pragma once

#include "ravikit/convert/writing/DeckTags.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ravikit {

/// What a paragraph is like that a text needs around it.
struct Paragraph {
    Tree::Id source = Tree::none;
    bool isCopy = false;
    std::uint32_t align = 0; ///< an alignCode, for one without a source
    AttributeChanges changes = {};
};

/// An element that stands open where a deck is written.
struct Standing {
    Element element = Element::Unknown;
    std::uint32_t entry = 0; ///< its number among the open ones; if added, that of what it is in
    bool isLoose = false;    ///< a format or link that gives way to what comes inside of it
    bool isAdded = false;    ///< for the sake of what is in it
    std::uint32_t addedFor = static_cast<std::uint32_t>(-1); ///< that structure; else for a text
    bool operator==(const Standing&) const = default;
};
/// From the outermost to the innermost.
using Chain = std::vector<Standing>;

/// The elements that a page has open, in its order, and which of them can stand open in a deck.
///
/// The answer follows from the open elements alone, from the outermost inwards. An element in its
/// place stands in the one that it has around it in the source. Any other structure stands right
/// inside the innermost one that takes it; what lies between the two is closed around it, and is
/// there again when the structure has been closed. Formats and links come last, around the text, as
/// far as what is around it takes them: formats first, since a link may not hold them.
class OpenElements {
public:
    using Handle = std::uint32_t;
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    struct Entry {
        Opening opening = {};
        bool isInPlace = false;
        std::uint32_t takesOff = 0; ///< no element: from here on these formats don't count
        Handle handle = 0;
        std::uint32_t instance = 0;  ///< grows when it is to be closed and opened again
        std::uint32_t line = 0;      ///< grows when what is added in it ends
        bool isWritten = false;      ///< at least once
        bool isEmptied = false;      ///< what it held may stand outside of it
        bool hasText = false;        ///< text in it is to be kept apart from what follows
        bool wantsBreak = false;     ///< before the next text
        std::u16string indent = {};  ///< of a deck or card, before its children
        std::u16string waiting = {}; ///< what isn't seen and comes after its start tag
        Paragraph around = {};       ///< of a structure: the one that it may need
        Chain outer = {};            ///< the chain without it, unless it is only on top of that
        bool isOnTop = false;
    };

    /// The number by which `entry` is closed; 0, with nothing opened, if too many are open.
    Handle push(Entry entry);
    void pop(); ///< takes out the last one

    std::size_t size() const { return m_entries.size(); }
    Entry& operator[](std::size_t index) { return m_entries[index]; }
    const Entry& operator[](std::size_t index) const { return m_entries[index]; }
    std::size_t find(Handle handle) const; ///< npos if it is not open

    bool isInside(Element element) const;
    bool isInsideLink() const;
    /// Whether the text at hand has this format.
    bool hasFormat(Element element) const;
    /// Whether a link that is not in its place is around the text at hand.
    bool isInsideLooseLink() const;
    /// Marks the formats of the text at hand that `effects` take off as emptied; false if it has
    /// none of them.
    bool emptyFormats(std::uint32_t effects);

    /// What stands open for elements.
    const Chain& chain() const { return m_chain; }
    /// The innermost element that holds its place; npos if there is none.
    std::size_t innermost() const;
    /// The innermost that holds its place and is neither format nor link.
    std::size_t innermostBlock() const;
    bool takesStructure(Element element) const;
    /// Makes `chain` what is to stand open around a text. `bare`: also right in what allows none.
    void findForText(bool bare, Chain& chain) const;
    /// Makes `chain` what is to stand open right inside `entry`; false if that can't be.
    bool findInside(std::size_t entry, Chain& chain) const;
    /// Makes `chain` what is to stand open around an element that is written whole; false if there
    /// is no place for it. `parent` is its parent in the source if it is in it on the page too.
    /// `inLine`: it goes where a text would.
    bool findForLeaf(Element element, Tree::Id parent, bool inLine, Chain& chain) const;

private:
    static constexpr std::size_t mostOpen = 512;

    struct Spot {
        std::size_t at = npos;
        bool needsCard = false;
        bool needsParagraph = false;
    };
    static Spot spotFor(const Chain& chain, Element element);
    static void takeSpot(Chain& chain, const Spot& spot, std::size_t structure);
    static void addLoose(Chain& chain, Standing loose);
    void add(std::size_t index);
    void addInPlace(const Standing& standing);
    void addStructure(const Standing& standing);

    std::vector<Entry> m_entries;
    Chain m_chain;
    Chain m_before; ///< for push
    Handle m_last = 0;
};

} // namespace ravikit
