#include "ravikit/convert/Merger.h"

#include "ravikit/convert/MergerCore.h"
#include "ravikit/convert/page/Carrier.h"
#include "ravikit/convert/page/PageShapes.h"
#include "ravikit/html/Style.h"
#include "ravikit/text/Chars.h"

namespace ravikit {

namespace {

/// How the source ends its lines; LF if it has one line.
std::u16string lineEndOf(const Tree* tree) {
    const std::u16string_view text = tree ? tree->text() : std::u16string_view();
    const std::size_t first = text.find_first_of(u"\r\n");
    if (first == std::u16string_view::npos) {
        return u"\n";
    }
    std::size_t behind = first;
    while (behind < text.size() && text[behind] == u'\r') {
        ++behind;
    }
    behind += behind < text.size() && text[behind] == u'\n' ? 1U : 0U;
    return std::u16string(text.substr(first, behind - first));
}

constexpr std::u16string_view prolog = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                       u"<!DOCTYPE wml PUBLIC \"-//WAPFORUM//DTD WML 1.3//EN\" "
                                       u"\"http://www.wapforum.org/DTD/wml13.dtd\">\n";

} // namespace

Merger::Merger(const PageTree& page, const KnownElements& known)
    : m_page(page)
    , m_known(known)
    , m_tree(known.tree())
    , m_writer(known.tree(), lineEndOf(known.tree()))
    , m_lineEnd(lineEndOf(known.tree())) {
    countPieces();
}

void Merger::countPieces() {
    for (const KnownElement& known : m_known.elements()) {
        if (known.isCopy && !known.isUnchanged && known.source != Tree::none && !isHollow(known)) {
            ++m_pieces[known.source].left;
        }
    }
}

void Merger::endPiece(const Frame& frame) {
    if (frame.known == nullptr) {
        return;
    }
    const auto pieces = m_pieces.find(frame.known->source);
    if (pieces != m_pieces.end()) {
        pieces->second.left -= frame.known->isCopy ? 1U : 0U;
        pieces->second.cut =
            frame.known->isCopy ? std::max(pieces->second.cut, frame.copiedTo) : frame.copiedTo;
    }
}

/// About as much as the deck will be: its source, or else what the page shows.
std::size_t Merger::expectedUnits() const {
    if (m_tree != nullptr) {
        return m_tree->text().size() + m_tree->text().size() / 8;
    }
    std::size_t units = 1024;
    for (const PageNode& node : m_page.nodes()) {
        units += node.text.size() + 8;
    }
    return units;
}

std::u16string Merger::merge() {
    m_writer.out().reserve(expectedUnits());
    DeckWriter::Handle root = 0;
    const KnownElement* const deck = m_tree == nullptr ? nullptr : m_known.find(m_known.rootNode());
    if (deck == nullptr || deck->source == Tree::none) {
        m_tree = nullptr;
        m_writer.raw(prolog);
        root = m_writer.openStructure({.element = Element::Wml});
        root = root != 0 ? root : m_writer.openInPlace({.element = Element::Wml});
        m_frames.push_back({.handle = root});
    } else {
        m_writer.raw(m_tree->text().substr(0, (*m_tree)[deck->source].begin));
        enterKnown(*deck);
    }
    for (std::uint32_t node = 0; node < m_page.size();) {
        closeUpTo(node);
        if (m_page[node].tag == PageTag::None) {
            addText(m_page[node].text);
            ++node;
        } else if (deck != nullptr && m_tree != nullptr && node == deck->page) {
            m_open.push_back({.node = node, .next = m_page[node].next});
            ++node;
        } else {
            node = visitElement(node);
        }
    }
    closeUpTo(m_page.size());
    flush(true);
    m_writer.close(m_frames.back().handle);
    m_writer.finish();
    if (deck != nullptr && m_tree != nullptr) {
        m_writer.raw(m_tree->text().substr((*m_tree)[deck->source].end));
    } else {
        m_writer.raw(m_lineEnd);
    }
    return std::move(m_writer.out());
}

void Merger::closeUpTo(std::uint32_t node) {
    while (!m_open.empty() && m_open.back().next <= node) {
        const Open open = m_open.back();
        m_open.pop_back();
        if (open.isSoft) {
            endLine(open.isBlock);
            m_items.push_back({.kind = Item::Kind::Leave, .isBlock = open.isBlock});
        }
        m_newExact -= open.isExact ? 1U : 0U;
        if (open.isLine && !m_items.empty() && m_items.back().unit == breakAtom &&
            !m_items.back().isBegin) {
            m_items.pop_back(); // it lets a caret be there, and ends no line
        }
        if (open.isPart) {
            m_items.push_back({.kind = Item::Kind::Edge, .isBlock = true});
        }
        if (!open.isFrame) {
            continue;
        }
        flush(true);
        const Frame frame = std::move(m_frames.back());
        m_frames.pop_back();
        endPiece(frame);
        m_exact -= frame.exact ? 1 : 0;
        if (frame.isParagraph) {
            if (m_writer.paragraphsWritten() == frame.lastPart) {
                m_writer.forceParagraph();
            }
            closeSoft();
        } else {
            const bool isWritten = m_writer.close(frame.handle);
            if (frame.isCaptioned && !isWritten) {
                writeText(textOf(frame.caption));
            }
        }
    }
}

/// Whether the page shows something here that is neither text nor anything that a deck has.
bool Merger::isLost(const PageNode& element) {
    switch (element.tag) {
    case PageTag::Dropped:
    case PageTag::RawText:
    case PageTag::Media:
        return true;
    case PageTag::NeedsHtml:
        return element.text == u"svg" || element.text == u"math";
    default:
        return false;
    }
}

std::uint32_t Merger::visitElement(std::uint32_t node) {
    const PageNode& element = m_page[node];
    m_here = element.begin;
    if (isLost(element)) {
        drop(u'`' + std::u16string(element.text) + u'`');
    }
    if (element.tag == PageTag::Dropped || element.tag == PageTag::RawText) {
        return element.tag == PageTag::Dropped ? node + 1 : element.next;
    }
    if (m_page.attribute(node, textAttribute) != nullptr && takeCaption(node)) {
        return element.next;
    }
    if (const KnownElement* const known = m_known.find(node);
        known != nullptr && m_tree != nullptr && known->source != Tree::none) {
        return visitKnown(*known);
    }
    if (isRoom(node)) {
        return element.next;
    }
    if (m_known.isWrapper(node)) {
        m_open.push_back({.node = node, .next = element.next});
        return node + 1;
    }
    if (element.tag == PageTag::Br) {
        m_items.push_back({.unit = breakAtom});
        return element.next;
    }
    if (enterLine(node)) {
        return node + 1;
    }
    const bool isTransparent = isPart(node);
    m_open.push_back({.node = node,
                      .next = element.next,
                      .isSoft = !isTransparent,
                      .isBlock = isBlockTag(element.tag),
                      .isPart = isTransparent,
                      .isExact = element.tag == PageTag::Pre});
    m_newExact += m_open.back().isExact ? 1U : 0U;
    if (isTransparent) {
        m_items.push_back({.kind = Item::Kind::Edge, .isBlock = true, .isBegin = true});
    } else {
        enterSoft(node);
    }
    return node + 1;
}

/// Whether `node` is there for the author's caret alone, and nobody typed in it; also a paragraph
/// that a browser put around such a one.
bool Merger::isRoom(std::uint32_t node) const {
    bool isRoom = m_page.attribute(node, roomAttribute) != nullptr;
    if (!isRoom && m_page[node].tag != PageTag::P) {
        return false;
    }
    for (std::uint32_t at = node + 1; at < m_page[node].next; ++at) {
        const bool isInner =
            m_page[at].tag == PageTag::Img && m_page.attribute(at, roomAttribute) != nullptr;
        const bool isFormat =
            formatOf(m_page[at].tag) != Element::Unknown && m_known.find(at) == nullptr;
        const bool isFiller = isFormat || m_page[at].tag == PageTag::Br ||
                              (m_page[at].tag == PageTag::None && trimmed(m_page[at].text).empty());
        if (!isFiller && !isInner) {
            return false;
        }
        isRoom = isRoom || isInner;
    }
    return isRoom;
}

bool Merger::isEmptyLine(std::uint32_t node) const {
    const std::uint32_t first = node + 1;
    return first == m_page[node].next ||
           (m_page[first].tag == PageTag::Br && first + 1 == m_page[node].next);
}

/// Enters a block that is one of the lines of its paragraph: what ends the line before is a break.
bool Merger::enterLine(std::uint32_t node) {
    if (!m_frames.back().hasBlockLines || m_open.empty() || !m_open.back().isFrame) {
        return false;
    }
    if (m_frames.back().linesEntered++ > 0) {
        m_items.push_back({.isBegin = true, .unit = breakAtom});
    }
    m_open.push_back({.node = node, .next = m_page[node].next, .isLine = true});
    return true;
}

void Merger::enterSoft(std::uint32_t node) {
    endLine(m_open.back().isBlock);
    m_items.push_back(
        {.kind = Item::Kind::Enter, .isBlock = m_open.back().isBlock, .unit = 0, .node = node});
}

/// Writes what the page has up to the edge of a block where the source has nothing to compare it
/// with: a page from elsewhere need not be in memory twice.
void Merger::endLine(bool isBlock) {
    if (isBlock && !m_items.empty() && m_frames.back().known == nullptr) {
        flush(false, true);
    }
}

/// Whether `node` is the next of the page's paragraphs that a source's one stands in.
bool Merger::isPart(std::uint32_t node) {
    const auto* const part = m_page.attribute(node, partAttribute);
    Frame& frame = m_frames.back();
    if (part == nullptr || m_page[node].tag != PageTag::P || frame.known == nullptr ||
        frame.isParagraph || m_open.empty() || !m_open.back().isFrame) {
        return false;
    }
    const Element whole = m_known.outline().element(frame.known->source);
    const bool isAligned = (pageEffects(m_page, node) & AlignBits) == frame.align;
    if (whole != Element::Fieldset && (whole != Element::P || !isAligned)) {
        return false;
    }
    std::uint32_t number = 0;
    for (const char16_t c : part->value.substr(0, 9)) {
        number = c >= u'0' && c <= u'9' ? number * 10 + (c - u'0') : number;
    }
    // Of several of one number an empty one before another is a line that an author made.
    const std::uint32_t after = m_page[node].next;
    const bool isEmptied = isEmptyLine(node) && after < m_page.size() &&
                           m_page.value(after, partAttribute) == part->value;
    const bool isNext = number > frame.lastPart && !isEmptied;
    frame.lastPart = isNext ? number : frame.lastPart;
    return isNext;
}

/// A text that shows an attribute of the element around it: it goes into the element's tag.
/// Anything else of the kind is text like other text.
bool Merger::takeCaption(std::uint32_t node) {
    Frame& frame = m_frames.back();
    const bool isTag = frame.known != nullptr && frame.handle != 0;
    if (!isTag || frame.isCaptioned || frame.caption != node) {
        return false;
    }
    frame.isCaptioned = true;
    return true;
}

void Merger::addText(std::u16string_view text) {
    if (m_exact > 0 || m_newExact > 0) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            const bool crLf = text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n';
            const char16_t c = text[i] == u'\r' ? u'\n' : text[i];
            if (!crLf) {
                m_items.push_back({.unit = m_exact == 0 && isBlank(c) ? exactBlank + c : c});
            }
        }
        return;
    }
    if (m_frames.back().known == nullptr) {
        addWords(text);
        return;
    }
    for (const char16_t c : text) {
        const bool blank = c <= u' ' && isBlank(c);
        if (c == emptyLink && isKeptEmpty()) {
            continue;
        }
        if (!blank || m_items.empty() || m_items.back().unit != u' ' ||
            m_items.back().kind != Item::Kind::Character) {
            m_items.push_back({.unit = blank ? u' ' : c});
        }
    }
}

/// Whether the page has an `emptyLink` here so that a link without text stays.
bool Merger::isKeptEmpty() const {
    const Tree::Id id = m_frames.back().known->source;
    return isLink(m_known.outline().element(id)) &&
           m_tree->source(id).find(emptyLink) == std::u16string_view::npos;
}

void Merger::addWords(std::u16string_view text) {
    if (m_items.empty() || m_items.back().kind != Item::Kind::Words) {
        m_items.push_back(
            {.kind = Item::Kind::Words, .node = static_cast<std::uint32_t>(m_ranges.size())});
        m_ranges.push_back({m_words.size(), m_words.size()});
    }
    Range& range = m_ranges.back();
    m_words.resize(range.end + text.size());
    char16_t* const begin = m_words.data() + range.begin;
    char16_t* to = m_words.data() + range.end;
    for (const char16_t c : text) {
        const bool blank = c <= u' ' && isBlank(c);
        if (!blank || to == begin || to[-1] != u' ') {
            *to++ = blank ? u' ' : c;
        }
    }
    range.end = static_cast<std::size_t>(to - m_words.data());
    m_words.resize(range.end);
}

/// The first thing that the deck lacks, whichever of the two ways it went.
Merger::Loss Merger::loss() const {
    const PageNode* const unread = m_page.dropped();
    if (unread != nullptr && (m_dropped.empty() || unread->begin < m_droppedAt)) {
        return {u'`' + std::u16string(unread->text) + u'`', unread->begin};
    }
    return {m_dropped, m_droppedAt};
}

void Merger::drop(std::u16string_view what) {
    if (m_dropped.empty()) {
        m_dropped = what;
        m_droppedAt = m_here;
    }
}

bool mergePage(const PageTree& page, bool strict, const Declarations* known, std::u16string& markup,
               Problems& problems) {
    KnownElements elements(page, known);
    if (elements.isUnchanged()) {
        markup = elements.takeSource();
        return true;
    }
    Merger merger(page, elements);
    std::u16string merged = merger.merge();
    if (const Merger::Loss loss = merger.loss(); strict && !loss.what.empty()) {
        problems.add(ProblemKind::NotConvertible, loss.begin, loss.begin,
                     u"the page holds what a deck has no place for: " + loss.what);
        return false;
    }
    markup = std::move(merged);
    return true;
}

} // namespace ravikit
