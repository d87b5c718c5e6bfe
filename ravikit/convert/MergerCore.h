#pragma once

#include "ravikit/convert/Gap.h"
#include "ravikit/convert/KnownElements.h"
#include "ravikit/convert/TextDiff.h"
#include "ravikit/convert/writing/DeckWriter.h"
#include "ravikit/convert/writing/LineText.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ravikit {

/// Walks a page in order and writes the deck that it shows. What the source knows is copied from
/// there; what lies between is compared with the source's gap and, where it differs, written new.
class Merger {
public:
    Merger(const PageTree& page, const KnownElements& known);

    std::u16string merge();

    /// What of the page is not in the deck; `what` is empty if there is nothing of the kind.
    struct Loss {
        std::u16string what;
        std::uint32_t begin = 0; ///< of its tag, see PageTree::placeOf; near it for a character
    };
    Loss loss() const;

private:
    /// A known element whose content is being merged.
    struct Frame {
        const KnownElement* known = nullptr; ///< null for what stands around the deck
        DeckWriter::Handle handle = 0;
        Tree::Id lastAnchor = Tree::none; ///< none: the element's begin
        std::uint32_t nextAnchor = 0;
        std::uint32_t caption = 0; ///< the page's node that shows its attribute
        bool isGapOpen = false;    ///< `m_gap` is this frame's, some of it used
        bool isCaptioned = false;
        bool isAfterBlock = false; ///< of what the source has elsewhere, a block came last
        bool isParagraph = false;  ///< written as the paragraph of its texts
        bool exact = false;
        bool hasBlockLines = false; ///< a browser wrote each of its lines as a block
        std::uint32_t linesEntered = 0;
        std::uint32_t lastPart = 0;
        std::uint32_t align = 0; ///< of a paragraph, as the page shows it
        Gap gap = {};
        std::size_t usedAtoms = 0;
        std::size_t copiedAtoms = 0; ///< up to where the source was copied last
        std::uint32_t copiedTo = 0;  ///< and up to which offset
        bool isEnding = false;       ///< nothing but what isn't seen is still to come
        std::size_t usedUnseen = 0;
        bool hasTask = false; ///< the task of a link was written that the writer has not heard of
    };
    /// An element of the page that the source doesn't know.
    struct Soft {
        std::vector<DeckWriter::Handle> handles = {};
        bool isBlock = false;
        bool isList = false;
        Paragraph outer = {};
        std::u16string_view label = {}; ///< of a group of options: text, if it comes to nothing
    };
    struct Open {
        std::uint32_t node = 0;
        std::uint32_t next = 0;
        bool isFrame = false;
        bool isSoft = false;
        bool isBlock = false;
        bool isPart = false;
        bool isLine = false;
        bool isExact = false;
    };
    /// What the page has in a gap, in order.
    struct Item {
        /// Words: text that need not be compared with the source. Edge: a line of the page ends or
        /// begins here, and no more.
        enum class Kind : std::uint8_t { Character, Words, Enter, Leave, Edge };
        Kind kind = Kind::Character;
        bool isBlock = false;
        bool isDropped = false; ///< a blank that doesn't count
        bool isBegin = false;   ///< of an edge or a break: a line of the page begins
        char32_t unit = 0;      ///< as in SourceAtom
        std::uint32_t node = 0; ///< of Enter; of Words, the number of their range
    };
    /// Where words stand in `m_words`.
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    struct List {
        bool isNumbered = false;
        std::uint32_t count = 0;
    };

    /// A paragraph of the source that stands in several pieces on the page.
    struct Pieces {
        std::uint32_t left = 0;      ///< copies that are still to come
        std::uint32_t cut = noneYet; ///< where in the source the piece before ended
    };
    static constexpr std::uint32_t noneYet = 0xFFFFFFFF;

    // The walk.
    void countPieces();
    void endPiece(const Frame& frame);
    std::size_t expectedUnits() const;
    void closeUpTo(std::uint32_t node);
    std::uint32_t visitElement(std::uint32_t node);
    void addText(std::u16string_view text);
    bool isKeptEmpty() const;
    void addWords(std::u16string_view text);
    bool takeCaption(std::uint32_t node);
    bool isPart(std::uint32_t node);
    bool isRoom(std::uint32_t node) const;
    bool isEmptyLine(std::uint32_t node) const;
    bool enterLine(std::uint32_t node);
    void enterSoft(std::uint32_t node);
    void endLine(bool isBlock);

    // What the source knows.
    std::uint32_t visitKnown(const KnownElement& known);
    bool writeWhole(const KnownElement& known);
    bool writeBox(const KnownElement& known);
    void startLine(const KnownElement& known);
    void enterKnown(const KnownElement& known);
    void alignCard(const KnownElement& known);
    AttributeChanges alignChange(const KnownElement& known, std::uint32_t align) const;
    AttributeChanges captionChange(const KnownElement& known, std::uint32_t caption) const;
    std::uint32_t captionOf(const KnownElement& known) const;
    std::optional<std::uint32_t> alignOfLines(std::uint32_t paragraph) const;
    bool holdsBlock(std::uint32_t node) const;
    std::uint32_t alignOnPage(const KnownElement& known) const;
    std::u16string textOf(std::uint32_t node) const;
    std::u16string withoutIds(Tree::Id id) const;
    std::u16string taskOf(Tree::Id anchor) const;

    // Gaps.
    /// Writes what the page has up to here. `isLast`: an anchor follows, or the element's end.
    /// `beforeBlock`: what follows is a block that the source has elsewhere.
    void flush(bool isLast, bool beforeBlock = false);
    void openGap();
    void readPart(Tree::Id part, bool isFirst, bool isLast);
    bool ownsElements(bool amongText) const;
    bool endsAtAnchor() const;
    GapPlace placeOfGap() const;
    bool endsBlock() const;
    void dropFillers(const GapPlace& place, bool isAtEnd);
    void normaliseItems(const GapPlace& place);
    std::vector<SharedRun> compare(bool isFirst, bool isLast) const;
    bool trimEnd(const Item& words, bool isAtEdge);
    bool trimBegin(const Item& words, bool isAtEdge);
    void writeItems(const std::vector<SharedRun>& shared);
    void writeCharacterItems(std::size_t firstItem, std::size_t behind, std::size_t number,
                             const std::vector<SharedRun>& shared, std::size_t& next);
    void leadLine(std::size_t item, std::size_t number, const std::vector<SharedRun>& shared);
    std::size_t joinedTo(const std::vector<SharedRun>& shared, std::size_t run, std::size_t number,
                         std::size_t firstItem, std::size_t limit) const;
    bool hasTrivia(std::size_t first, std::size_t last) const;
    std::size_t wordBegin(std::size_t first, std::size_t end) const;
    void writeLine(LineText& line);
    void addUnseenForNew(std::size_t firstItem, std::size_t behind, std::size_t atom,
                         std::size_t nextAtom, LineText& line);
    void addRun(std::size_t firstItem, std::size_t behind, std::size_t atom, LineText& line);
    void addNew(std::size_t firstItem, std::size_t behind, LineText& line);
    void writeCharacters(std::u16string_view text, bool bare);
    bool canCopy(std::size_t atom, std::size_t count) const;
    bool isHollow(const KnownElement& known) const;
    bool belongsHere(const Unseen& one) const;
    std::size_t copyEnd(std::size_t begin, std::size_t end) const;
    bool isJoined(std::size_t atom) const;
    void addUnseenUpTo(std::size_t atom, bool keepsLastBlank, LineText& line);
    void noteTask();
    void writeTaskInside(std::size_t next);
    void writeUnseen(std::size_t atom, bool keepsLastBlank);
    bool isBare() const;
    bool isBlockSource(Tree::Id id) const;

    // What the source doesn't know.
    void openSoft(std::uint32_t node);
    void closeSoft();
    void openBlock(std::uint32_t node, Soft& soft, std::uint32_t effects);
    void openInline(std::uint32_t node, Soft& soft);
    bool openTablePart(std::uint32_t node, Soft& soft);
    void addFormats(std::uint32_t effects, Soft& soft);
    void addFormat(Element element, Soft& soft);
    void writePicture(std::uint32_t node);
    void writeInput(std::uint32_t node);
    std::uint32_t columnsOf(std::uint32_t table) const;
    void writeText(std::u16string_view text);
    static bool isLost(const PageNode& element);
    void drop(std::u16string_view what);

    const PageTree& m_page;
    const KnownElements& m_known;
    const Tree* m_tree;
    DeckWriter m_writer;
    std::vector<Open> m_open;
    std::vector<Frame> m_frames;
    std::vector<Soft> m_soft;
    std::vector<Item> m_items;
    std::vector<Range> m_ranges; ///< of the items that are words
    std::u16string m_words;      ///< with each blank as one space
    std::vector<List> m_lists;
    std::map<Tree::Id, Pieces> m_pieces; ///< of the paragraphs that have copies
    bool m_wantsBreak = false;           ///< a line of the page has ended, and only that
    bool m_isInLine = false;      ///< of what is written in a gap, something stands in this line
    std::uint32_t m_exact = 0;    ///< open elements of the source in which each blank counts
    std::uint32_t m_newExact = 0; ///< and such that only the page has
    std::u16string m_buffer;
    std::u16string m_newText;
    std::u16string m_lineEnd;
    std::u16string m_dropped;
    std::uint32_t m_droppedAt = 0;
    std::uint32_t m_here = 0; ///< the tag that was visited last
};

} // namespace ravikit
