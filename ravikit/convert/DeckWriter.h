#pragma once

#include "ravikit/convert/Elements.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ravikit {

/// Appends `text` as characters of an element, or of an attribute's value in double quotes. What
/// XML has no place for becomes U+FFFD, a control nothing; false if there was such a unit.
bool appendCharacters(std::u16string& out, std::u16string_view text, bool isValue = false);

/// Attributes that are to differ from the source's: name and value; `remove` takes one away.
struct AttributeChange {
    std::u16string name;
    std::u16string value;
    bool remove = false;
};
using AttributeChanges = std::vector<AttributeChange>;

/// Writes a deck anew, so that what was valid stays so. Its caller opens and closes elements as the
/// page nests them; which of them really stand open around a text is decided when the text comes.
/// What WML doesn't let in where it is asked for is closed around it, put outside of it or left
/// out, and what a text needs around it is added.
class DeckWriter {
public:
    using Handle = std::uint32_t; ///< 0: nothing was opened, and nothing has to be closed

    /// `tree` is the deck that elements are copied from, or null.
    DeckWriter(const Tree* tree, std::u16string lineEnd)
        : m_tree(tree)
        , m_lineEnd(std::move(lineEnd)) {}

    /// An element to be opened.
    struct Opening {
        Element element = Element::Unknown;
        Tree::Id source = Tree::none; ///< its tags are copied from here
        bool isCopy = false;          ///< without its ids, which stand elsewhere already
        AttributeChanges changes = {};
        std::u16string tag = {}; ///< the start tag of one without a source; `<name>` if empty
    };

    /// Opens an element that stands in its source as it does on the page: nothing is turned.
    Handle openInPlace(Opening opening);
    /// Whether nothing stands open inside `handle` but what gives way: what texts needed around
    /// them, formats and links.
    bool isInnermost(Handle handle) const;
    /// Opens one that may be turned, or be left out (0).
    Handle openFormat(Opening opening);
    Handle openLink(Opening opening);
    Handle openStructure(Opening opening);
    /// Ends it. One that has a place in the source is written even if nothing was in it, but for a
    /// size that was suspended.
    void close(Handle handle);

    /// From here on `big` and `small` don't count, until `resumeSizes` is given the same.
    std::vector<Handle> suspendSizes();
    void resumeSizes(const std::vector<Handle>& sizes);

    /// What the paragraphs are like that texts need from here on.
    struct Paragraph {
        Tree::Id source = Tree::none;
        bool isCopy = false;
        std::uint32_t align = 0; ///< an alignCode, for one without a source
        AttributeChanges changes = {};
    };
    /// Ends the paragraph at hand: what follows stands on a line of its own.
    void breakParagraph(Paragraph next);
    const Paragraph& paragraph() const { return m_paragraph; }
    /// Writes the paragraph even though it is empty.
    void forceParagraph();
    std::uint32_t paragraphsWritten() const { return m_paragraphs; }

    /// Writes character data, escaped already. `bare`: also where WML allows no text.
    void text(std::u16string_view escaped, bool bare);
    void lineBreak(std::u16string_view tag, bool bare);
    /// Writes the whole of an element. `parent` is its parent in the source if it stands in it on
    /// the page too. False if there is no place for it.
    bool leaf(Element element, std::u16string_view markup, Tree::Id parent);
    bool canPlace(Element element) const { return placeOf(element, Tree::none) != npos; }
    /// Whether text here stands in an element of this kind, however deep.
    bool isInside(Element element) const;

    /// Writes what isn't seen: right inside `handle`, or where the writing stands if that is 0.
    void unseen(std::u16string_view markup, Handle handle);

    /// The line end and indentation ahead of a child of the innermost deck or card, as its source
    /// has them.
    std::u16string_view indentation() const;
    void raw(std::u16string_view markup) { m_out += markup; }

    void finish() { synchronise(0); }
    std::u16string& out() { return m_out; }

private:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);
    static constexpr std::size_t mostOpen = 512;

    struct Entry {
        Opening opening;
        Handle handle = 0;
        std::uint32_t instance = 0;
        std::uint32_t suspended = 0;
        bool isEmptied = false; ///< a size that was suspended: what it held may stand outside of it
        bool inPlace = false;
        bool implied = false;
        bool written = false;
        bool hasText = false;       ///< the text in it is to be kept apart from what follows
        bool wantsBreak = false;    ///< before the next text
        std::u16string indent = {}; ///< ahead of its children
    };
    /// An element that stands open in what is written.
    struct Written {
        Handle handle;
        std::uint32_t instance;
        std::u16string endTag;
    };

    static bool isFloat(const Entry& entry);
    Handle insert(std::size_t at, Opening opening, bool inPlace, bool implied);
    std::size_t indexOf(Handle handle) const;
    std::size_t structureIndex() const;
    std::size_t placeOf(Element element, Tree::Id parent) const;
    void imply(std::size_t at, Element element);
    void addParagraphAround(std::size_t from);
    void dropImplied(bool cards = false);
    void prepareText(bool bare);
    void addContainer(bool bare);
    std::size_t prepareLeaf(Element element, Tree::Id parent);
    void breakInside(std::size_t structure);
    void findEffective(std::size_t limit);
    void synchronise(std::size_t limit);
    void openEffective();
    void closeWritten(Handle handle);
    void writeStart(Entry& entry, std::size_t index);
    void writeEmpty(std::size_t index);
    std::u16string startTag(const Opening& opening, bool isCopy, bool keepsSlash) const;
    std::u16string endTag(const Opening& opening) const;
    std::u16string indentOf(const Entry& entry, std::size_t index) const;

    const Tree* m_tree;
    std::u16string m_lineEnd;
    std::u16string m_out;
    std::vector<Entry> m_entries;
    std::vector<Written> m_written;
    std::vector<std::size_t> m_effective; ///< what findEffective found
    Paragraph m_paragraph;
    Handle m_lastHandle = 0;
    std::uint32_t m_lastInstance = 0;
    std::uint32_t m_paragraphs = 0;
};

} // namespace ravikit
