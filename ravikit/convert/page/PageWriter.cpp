#include "ravikit/convert/page/PageWriter.h"

#include "ravikit/convert/Elements.h"
#include "ravikit/convert/page/Carrier.h"
#include "ravikit/convert/page/Digest.h"
#include "ravikit/convert/page/Hash.h"
#include "ravikit/convert/page/PageShapes.h"
#include "ravikit/html/Style.h"
#include "ravikit/text/Chars.h"
#include "ravikit/text/LargePages.h"
#include "ravikit/text/Scan.h"
#include "ravikit/text/Wording.h"

#include <algorithm>
#include <vector>

namespace ravikit {

namespace {

/// What text cannot hold as it is.
struct EscapeStop {
    bool operator()(char16_t c) const {
        return c == u'&' || c == u'<' || c == u'>' || c == u'"' || c == u'\r' || c == u'\u00A0';
    }
#if defined(__SSE2__)
    scan::Bytes operator()(scan::Bytes u) const {
        using scan::either;
        using scan::equals;
        return either(either(either(equals(u, u'&'), equals(u, u'<')),
                             either(equals(u, u'>'), equals(u, u'"'))),
                      either(equals(u, u'\r'), equals(u, u'\u00A0')));
    }
#endif
};

class PageWriter {
public:
    explicit PageWriter(const Tree& tree)
        : m_tree(tree)
        , m_outline(tree)
        , m_deck(Mark::deckOf(hashOf(tree.text()))) {}

    std::u16string write() {
        m_page.reserve(m_tree.text().size() * 3 + 1024);
        askForLargePages(m_page.data(), m_page.capacity() * sizeof(char16_t));
        const Tree::Id root = m_tree.documentElement();
        if (root == Tree::none) {
            m_digest.open(PageTag::Pre, 0);
            m_page = u"<div><pre>\n";
            text(m_tree.text());
            return m_page + u"</pre></div>";
        }
        const Tree::Id behind = m_tree[root].next;
        for (Tree::Id id = root; id < behind;) {
            closeUpTo(id);
            id = writeNode(id);
        }
        closeUpTo(behind);
        return std::move(m_page);
    }

private:
    static constexpr std::size_t none = std::u16string::npos;

    struct Frame {
        Tree::Id next; ///< the node after it
        std::u16string_view endTag;
        std::size_t mark = none; ///< where its digest goes
        Element element = Element::Unknown;
        bool inParts = false; ///< its inline content stands in paragraphs of the page
        bool isPart = false;
        bool isNeutral = false; ///< a table or row that HTML wouldn't take as one
        bool skipsBlanks = false;
        bool hasBody = false; ///< an HTML table's body stands open in it
        bool isCard = false;
        bool hasContent = false;        ///< of a card: something is shown in it but its title
        bool endsInKey = false;         ///< of a card: so far
        std::size_t begin = 0;          ///< where what it holds begins on the page
        std::u16string_view align = {}; ///< of a table and its rows: a letter a column
        std::uint32_t cells = 0;        ///< of a row, so far
        std::uint32_t parts = 0;
    };

    Tree::Id writeNode(Tree::Id id) {
        switch (m_tree.kind(id)) {
        case NodeKind::Element:
            return writeElement(id);
        case NodeKind::Blank:
            if (!m_open.empty() && (m_open.back().skipsBlanks || m_open.back().inParts)) {
                break;
            }
            text(m_tree.source(id));
            break;
        case NodeKind::Reference:
            if (m_outline.isUnseen(id)) {
                break;
            }
            [[fallthrough]];
        case NodeKind::Text:
        case NodeKind::CData:
            noteInCard(false);
            openPart();
            writeCharacters(id);
            break;
        default:
            break;
        }
        return m_tree[id].next;
    }

    void writeCharacters(Tree::Id id) {
        switch (m_tree.kind(id)) {
        case NodeKind::CData:
            text(insideCData(m_tree.source(id)));
            break;
        case NodeKind::Reference: {
            const std::u16string characters = m_tree.referenceText(id);
            text(characters.empty() ? m_tree.source(id) : characters);
            break;
        }
        default:
            text(m_tree.source(id));
        }
    }

    Tree::Id writeElement(Tree::Id id) {
        const Element element = m_outline.element(id);
        if (element == Element::Br) {
            noteInCard(false);
            openPart();
            m_page += u"<br>";
            m_digest.open(PageTag::Br, 0);
            m_digest.close();
            return m_tree[id].next;
        }
        if (!m_outline.isShown(id)) {
            return m_tree[id].next;
        }
        const bool flat = m_outline.isFlat(id);
        const bool isNeutral = m_outline.isIrregular(id) ||
                               ((element == Element::Tr || element == Element::Td) &&
                                (m_open.empty() || m_open.back().isNeutral)) ||
                               ((element == Element::Option || element == Element::Optgroup) &&
                                (m_open.empty() || m_open.back().isNeutral));
        const bool split = element == Element::P && m_outline.holdsBlock(id);
        const ShapePlace place{.isIrregular = isNeutral || split,
                               .isInLine = element == Element::Do && !isInCard(),
                               .isInLink = isLink(element) && isInLink()};
        const Shape& shape = flat ? neutralShape() : shapeOf(element, place);
        noteInCard(shape.tag == PageTag::Div && element == Element::Do);
        if (isBlockTag(shape.tag) || (!flat && m_outline.holdsBlock(id))) {
            closePart();
        } else {
            openPart();
        }
        openMarked(id, element, shape);
        Frame& frame = m_open.back();
        frame.isNeutral = isNeutral;
        frame.isCard = element == Element::Card && !flat;
        if (frame.isCard) {
            writeRoom();
        }
        frame.inParts = split || (element == Element::Fieldset && !flat);
        frame.skipsBlanks = holdsElementsOnly(element) && !m_outline.isBare(id);
        writeCaption(id, element, shape);
        m_open.back().begin = m_page.size();
        if (flat) {
            writeFlat(id);
            return m_tree[id].next;
        }
        if (element == Element::Table && !isNeutral) {
            m_page += u"<tbody>";
            m_digest.open(PageTag::Tbody, 0);
            m_open.back().hasBody = true;
        }
        return isBox(element) ? m_tree[id].next : m_tree.firstContent(id);
    }

    void openMarked(Tree::Id id, Element element, const Shape& shape) {
        m_page += shape.start;
        std::u16string_view align;
        if (element == Element::P) {
            align = writeParagraphAttributes(id, shape.tag == PageTag::P);
        } else if (shape.tag == PageTag::Td) {
            align = nextCellAlign();
            appendAlign(align);
        }
        const std::size_t mark = appendMark(m_page, m_deck, m_tree[id].begin);
        if (m_open.empty()) {
            m_page += u' ';
            m_page += deckAttribute;
            m_page += u"=\"";
            appendCarried(m_page, m_tree.text());
            m_page += u'"';
        }
        const std::u16string shown =
            shape.value.empty() ? std::u16string() : shownText(m_tree, id, element);
        if (!shape.value.empty()) {
            appendValue(shape.value, shown);
        }
        if (shape.tag == PageTag::Select) {
            appendValue(u"size", decimal(optionsIn(id)));
        }
        m_page += u'>';
        const bool isAligned = shape.tag == PageTag::P || shape.tag == PageTag::Td;
        m_digest.open(shape.tag, isAligned ? alignCode(align) : 0);
        m_digest.text(shown);
        if (shape.tag == PageTag::Table) {
            const Tree::Id columns = m_tree.attribute(id, u"align");
            align = columns == Tree::none ? align : m_tree.rawValue(columns);
        } else if (shape.tag == PageTag::Tr) {
            align = m_open.back().align;
        }
        m_open.push_back(
            {.next = m_tree[id].next, .endTag = shape.end, .mark = mark, .element = element});
        m_open.back().align = align;
        m_open.back().begin = m_page.size();
        if (shape.tag == PageTag::Pre) {
            m_page += u'\n'; // a reader of HTML drops the first line end
        }
    }

    /// How the table has the next cell of the row at hand; empty if it says nothing.
    std::u16string_view nextCellAlign() {
        Frame& row = m_open.back();
        const std::size_t column = row.cells++;
        switch (column < row.align.size() ? row.align[column] : u'D') {
        case u'L':
            return alignName(1);
        case u'C':
            return alignName(2);
        case u'R':
            return alignName(3);
        default:
            return {};
        }
    }

    /// Gives the alignment that the page shows.
    std::u16string_view writeParagraphAttributes(Tree::Id id, bool isParagraph) {
        const Tree::Id mode = m_tree.attribute(id, u"mode");
        if (mode != Tree::none && m_tree.rawValue(mode) == u"nowrap") {
            m_page += u" style=\"white-space:nowrap\"";
        }
        const Tree::Id attribute = m_tree.attribute(id, u"align");
        const std::u16string_view align =
            attribute == Tree::none ? std::u16string_view() : m_tree.rawValue(attribute);
        if (alignCode(align) == 0) {
            return {};
        }
        if (isParagraph) {
            appendAlign(align);
        }
        return align;
    }

    void appendAlign(std::u16string_view align) {
        if (!align.empty()) {
            m_page += u" align=\"";
            m_page += align;
            m_page += u'"';
        }
    }

    void appendValue(std::u16string_view name, std::u16string_view value) {
        m_page += u' ';
        m_page += name;
        m_page += u"=\"";
        escape(value);
        m_page += u'"';
    }

    void writeCaption(Tree::Id id, Element element, const Shape& shape) {
        if (shape.caption.empty()) {
            return;
        }
        const std::u16string caption = shownText(m_tree, id, element);
        if (caption.empty() && shape.captionTag != PageTag::H2) {
            return;
        }
        m_page += shape.caption;
        m_digest.open(shape.captionTag, 0);
        if (shape.captionTag == PageTag::H2) {
            m_digest.open(PageTag::Span, 0);
        }
        text(caption);
        if (shape.captionTag == PageTag::H2) {
            m_digest.close();
        }
        m_digest.close();
        m_page += shape.captionEnd;
    }

    bool isInCard() const {
        return m_open.empty() || m_open.back().isCard || m_open.back().element == Element::Wml;
    }
    bool isInLink() const {
        return std::any_of(m_open.begin(), m_open.end(),
                           [](const Frame& frame) { return isLink(frame.element); });
    }

    void noteInCard(bool isKey) {
        if (!m_open.empty() && m_open.back().isCard) {
            m_open.back().endsInKey = isKey;
            m_open.back().hasContent = true;
        }
    }

    void writeRoom() {
        m_page += room;
        m_digest.open(PageTag::Img, 0);
        m_digest.close();
    }

    /// What an author can click into where there is nothing.
    void fillEmpty() {
        const Frame& frame = m_open.back(); // until a part is opened
        if (frame.isCard && !frame.hasContent) {
            m_page += emptyRoom;
            m_digest.open(PageTag::P, 0);
            writeFiller();
            m_digest.close();
        } else if (frame.isCard && frame.endsInKey) {
            writeRoom();
        } else if (frame.element == Element::Fieldset && frame.inParts &&
                   frame.begin == m_page.size()) {
            openPart();
            m_page += u"<br>";
            writeFiller();
            close();
        } else if ((frame.element == Element::P || frame.element == Element::Td) && !frame.isPart &&
                   !frame.inParts && !frame.isNeutral && isBlankFrom(frame.begin)) {
            m_page += u"<br>";
            writeFiller();
        }
    }

    bool isBlankFrom(std::size_t begin) const {
        return std::all_of(m_page.begin() + static_cast<std::ptrdiff_t>(begin), m_page.end(),
                           [](char16_t c) { return isBlank(c); });
    }

    void writeFiller() {
        m_digest.open(PageTag::Br, 0);
        m_digest.close();
    }

    std::uint32_t optionsIn(Tree::Id select) const {
        std::uint32_t count = 0;
        for (Tree::Id id = select; id < m_tree[select].next; ++id) {
            const Element e =
                m_tree.kind(id) == NodeKind::Element ? m_outline.element(id) : Element::Unknown;
            count += e == Element::Option || e == Element::Optgroup ? 1 : 0;
        }
        return std::max<std::uint32_t>(count, 1);
    }

    /// All that `id` holds as one text.
    void writeFlat(Tree::Id id) {
        for (Tree::Id at = m_tree.firstContent(id); at < m_tree[id].next;) {
            const NodeKind kind = m_tree.kind(at);
            if (kind == NodeKind::Element) {
                at = m_tree.firstContent(at);
                continue;
            }
            if (kind == NodeKind::Text || kind == NodeKind::Blank || kind == NodeKind::CData ||
                kind == NodeKind::Reference) {
                writeCharacters(at);
            }
            at = m_tree[at].next;
        }
    }

    void openPart() {
        if (m_open.empty() || !m_open.back().inParts) {
            return;
        }
        Frame& whole = m_open.back();
        const Frame part{.next = whole.next,
                         .endTag = shapeOf(Element::P, {}).end,
                         .element = Element::P,
                         .isPart = true,
                         .align = whole.align};
        m_page += u"<p ";
        m_page += partAttribute;
        m_page += u"=\"";
        for (const char c : std::to_string(++whole.parts)) {
            m_page += static_cast<char16_t>(c);
        }
        m_page += u'"';
        appendAlign(part.align);
        m_page += u'>';
        m_digest.open(PageTag::P, alignCode(part.align));
        m_open.push_back(part);
    }

    void closePart() {
        if (!m_open.empty() && m_open.back().isPart) {
            close();
        }
    }

    void closeUpTo(Tree::Id id) {
        while (!m_open.empty() && m_open.back().next <= id) {
            close();
        }
    }

    void close() {
        fillEmpty();
        const Frame& frame = m_open.back();
        if (frame.hasBody) {
            m_digest.close();
            m_page += u"</tbody>";
        }
        const std::uint64_t digest = m_digest.close();
        if (frame.mark != none) {
            setDigest(m_page, frame.mark, Mark::digestOf(digest));
        }
        m_page += frame.endTag;
        m_open.pop_back();
    }

    void text(std::u16string_view text) {
        m_digest.text(text);
        escape(text);
    }

    void escape(std::u16string_view text) {
        const char16_t* at = text.data();
        const char16_t* const end = at + text.size();
        while (at != end) {
            const char16_t* const stop = scan::find(at, end, EscapeStop());
            m_page.append(at, static_cast<std::size_t>(stop - at));
            if (stop == end) {
                return;
            }
            at = stop + 1;
            switch (*stop) {
            case u'&':
                m_page += u"&amp;";
                break;
            case u'<':
                m_page += u"&lt;";
                break;
            case u'>':
                m_page += u"&gt;";
                break;
            case u'"':
                m_page += u"&quot;";
                break;
            case u'\u00A0':
                m_page += u"&nbsp;";
                break;
            default: // a line end, which HTML has as one LF
                if (at == end || *at != u'\n') {
                    m_page += u'\n';
                }
            }
        }
    }

    const Tree& m_tree;
    Outline m_outline;
    std::uint64_t m_deck;
    std::u16string m_page;
    Digest m_digest;
    std::vector<Frame> m_open;
};

} // namespace

std::u16string writePage(const Tree& tree) {
    return PageWriter(tree).write();
}

} // namespace ravikit
