#pragma once

#include "ravikit/convert/writing/OpenElements.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace ravikit {

/// Writes a deck, so that what was valid stays so. Its caller opens and closes elements as the
/// page nests them; which of them really stand open around a text is decided when the text comes.
/// What WML doesn't let in where it is asked for is closed around it, put outside of it or left
/// out, and what a text needs around it is added.
class DeckWriter {
public:
    using Handle = OpenElements::Handle; ///< 0: nothing was opened, and nothing has to be closed

    /// `tree` is the deck that elements are copied from, or null.
    DeckWriter(const Tree* tree, std::u16string lineEnd)
        : m_tree(tree)
        , m_lineEnd(std::move(lineEnd)) {}

    /// Opens an element that stands in its source as it does on the page: nothing is turned.
    Handle openInPlace(Opening opening);
    /// Whether nothing stands open inside `handle` but what gives way: what texts needed around
    /// them, formats and links.
    bool isInnermost(Handle handle) const;
    /// Opens one that may be turned, or be left out (0).
    Handle openFormat(Opening opening);
    Handle openLink(Opening opening);
    Handle openStructure(Opening opening);
    /// From here on the formats around it don't count that `effects`, of AllNormal, take off.
    Handle openWithout(std::uint32_t effects);
    bool isWritten(Handle handle) const;
    /// Ends it; of all that are open it is the innermost. One that has a place in the source is
    /// written even if nothing was in it, but for a size that did not count.
    /// False if it was not written.
    bool close(Handle handle);

    /// Ends the paragraph at hand: what follows stands on a line of its own.
    void breakParagraph(Paragraph next);
    /// What the paragraphs are like that texts need from here on.
    const Paragraph& paragraph() const { return m_paragraph; }
    /// Writes the paragraph even though it is empty.
    void forceParagraph();
    std::uint32_t paragraphsWritten() const { return m_paragraphs; }

    /// Writes character data, escaped already. `bare`: also where WML allows no text.
    void text(std::u16string_view escaped, bool bare);
    void lineBreak(std::u16string_view tag, bool bare);
    /// Whether a line break can stand where a text would.
    bool takesBreaks(bool bare) const;
    /// Writes the whole of an element. `parent` is its parent in the source if it stands in it on
    /// the page too. False if there is no place for it.
    bool leaf(Element element, std::u16string_view markup, Tree::Id parent);
    bool canPlace(Element element) const;
    /// Whether text here stands in an element of this kind, however deep.
    bool isInside(Element element) const { return m_open.isInside(element); }

    /// Writes what isn't seen: right inside `handle`, or where the writing stands if that is 0. In
    /// an element that may not be empty it waits for what makes it stand, and goes with it
    /// otherwise.
    void unseen(std::u16string_view markup, Handle handle);
    /// What was written last holds the task of the link around it.
    void noteTask();
    /// Whether what is written inside `handle` really goes there.
    bool holds(Handle handle) const;
    /// Whether a text right inside `handle` really stands there; `bare` as in `text`.
    bool holdsText(Handle handle, bool bare) const;

    void raw(std::u16string_view markup) { m_out += markup; }
    void finish() { openExactly({}); }
    std::u16string& out() { return m_out; }

private:
    static constexpr std::size_t npos = OpenElements::npos;

    /// An element that stands open in what is written.
    struct Written {
        Handle handle; ///< of an added one, of what it was added in
        std::uint32_t number;
        Element added; ///< Unknown if it was asked for
        std::u16string endTag;
        std::u16string task = {}; ///< to be written before the end tag
    };

    Written identity(const Standing& standing) const;
    bool isOpen(const Standing& standing) const;
    void openExactly(const Chain& chain);
    void openFor(const Chain& chain);
    bool isBetweenPieces(std::size_t index) const;
    void closeWritten(std::size_t left);
    void writeStart(const Chain& chain, std::size_t index);
    void writeEmpty(std::size_t index);
    void openForText(bool bare);
    Opening openingOf(const Standing& standing);
    void alignLine(OpenElements::Entry& block) const;
    Opening nextParagraph(Paragraph& paragraph);
    std::u16string indentation(const Chain& chain, std::size_t index) const;
    std::u16string indentInside(const Opening& opening) const;

    const Tree* m_tree;
    std::u16string m_lineEnd;
    std::u16string m_out;
    OpenElements m_open;
    Chain m_chain; ///< around what is being written
    std::vector<Written> m_written;
    Paragraph m_paragraph;
    std::unordered_set<Tree::Id> m_begun; ///< the source's paragraphs whose ids are written
    std::uint32_t m_paragraphs = 0;
};

} // namespace ravikit
