#include "ravikit/convert/MergerCore.h"
#include "ravikit/convert/page/Carrier.h"
#include "ravikit/html/Style.h"
#include "ravikit/text/Chars.h"

namespace ravikit {

namespace {

/// The blanks of a text as a page shows them: one between words.
std::u16string collapsed(std::u16string_view text) {
    std::u16string words;
    for (const char16_t c : text) {
        if (!isBlank(c)) {
            words += c;
        } else if (!words.empty() && words.back() != u' ') {
            words += u' ';
        }
    }
    if (words.ends_with(u' ')) {
        words.pop_back();
    }
    return words;
}

} // namespace

/// Whether `known` is a paragraph that a browser left with nothing in it to be seen.
bool Merger::isHollow(const KnownElement& known) const {
    const Element element = m_known.outline().element(known.source);
    const bool isParagraph = element == Element::P || element == Element::Pre;
    const bool isEmpty = m_page[known.page].next == known.page + 1;
    const bool isOfBlocks = m_page[known.page].tag == PageTag::Div; // has no line of its own
    return isParagraph && ((isEmpty && (known.isCopy || isOfBlocks)) || isRoom(known.page));
}

std::uint32_t Merger::visitKnown(const KnownElement& known) {
    const Element element = m_known.outline().element(known.source);
    if (isHollow(known)) {
        return m_page[known.page].next;
    }
    flush(known.isAnchor, !known.isAnchor && isBlockSource(known.source));
    Frame& frame = m_frames.back();
    if (known.isAnchor) {
        frame.lastAnchor = known.source;
        frame.copiedTo = (*m_tree)[known.source].end;
        ++frame.nextAnchor;
    }
    // A changed copy of a box with text in it is what was split off it.
    const bool isReplaced = m_page[known.page].next == known.page + 1;
    const bool isWhole = isBox(element) && (!known.isCopy || isReplaced);
    const bool done = known.isUnchanged ? writeWhole(known) : isWhole && writeBox(known);
    if (done) {
        return m_page[known.page].next;
    }
    if (isBox(element)) { // its text at least
        writeText(textOf(known.page));
        return m_page[known.page].next;
    }
    m_open.push_back({.node = known.page, .next = m_page[known.page].next, .isFrame = true});
    enterKnown(known);
    return known.page + 1;
}

bool Merger::writeWhole(const KnownElement& known) {
    const Tree::Id parent = known.isAnchor ? m_known.parentOf(known.source) : Tree::none;
    const Element element = m_known.outline().element(known.source);
    const std::u16string markup =
        known.isCopy ? withoutIds(known.source) : std::u16string(m_tree->source(known.source));
    startLine(known);
    return m_writer.leaf(element, markup, parent);
}

/// An element that is on the page as the text of one of its attributes.
bool Merger::writeBox(const KnownElement& known) {
    const Tree& tree = *m_tree;
    const Element element = m_known.outline().element(known.source);
    AttributeChanges changes = captionChange(known, known.page);
    DeckWriter tags(m_tree, m_lineEnd);
    const DeckWriter::Handle handle = tags.openInPlace(
        {.element = element, .source = known.source, .isCopy = known.isCopy, .changes = changes});
    std::u16string markup;
    if (tree.has(known.source, EmptyTag)) {
        tags.close(handle);
        markup = std::move(tags.out());
    } else {
        tags.unseen(
            tree.text().substr(tree.startTagEnd(known.source),
                               tree.endTagBegin(known.source) - tree.startTagEnd(known.source)),
            handle);
        tags.close(handle);
        markup = std::move(tags.out());
    }
    const Tree::Id parent = known.isAnchor ? m_known.parentOf(known.source) : Tree::none;
    startLine(known);
    return m_writer.leaf(element, markup, parent);
}

/// Lets a key that stands in a line on the page stand in a paragraph, where a card would take it
/// too.
void Merger::startLine(const KnownElement& known) {
    const bool isElsewhere = !known.isAnchor || m_frames.back().isParagraph;
    if (m_page[known.page].tag == PageTag::Input && isElsewhere &&
        m_known.outline().element(known.source) == Element::Do) {
        m_writer.text({}, false);
    }
}

void Merger::enterKnown(const KnownElement& known) {
    const Element element = m_known.outline().element(known.source);
    Frame frame{.known = &known, .nextAnchor = known.firstAnchor};
    frame.copiedTo = m_tree->startTagEnd(known.source);
    frame.exact = element == Element::Pre;
    frame.align = element == Element::P ? alignOnPage(known) : 0;
    frame.hasBlockLines = element == Element::P && m_page[known.page].tag == PageTag::P &&
                          alignOfLines(known.page).has_value();
    frame.caption = captionOf(known);
    frame.isCaptioned = m_page[known.page].tag == PageTag::Optgroup;
    AttributeChanges changes = element == Element::P ? alignChange(known, frame.align)
                                                     : captionChange(known, frame.caption);
    Opening opening{.element = element,
                    .source = known.source,
                    .isCopy = known.isCopy,
                    .changes = std::move(changes),
                    .task = element == Element::Anchor ? taskOf(known.source) : u""};
    const bool isRoot = m_frames.empty();
    // What stands in an element that was turned can't stand in its place.
    const bool inPlace = isRoot || (known.isAnchor && m_writer.isInnermost(m_frames.back().handle));
    if (inPlace) {
        frame.handle = m_writer.openInPlace(std::move(opening));
    } else if (element == Element::P) {
        frame.isParagraph = true;
        Soft soft{.isBlock = true, .outer = m_writer.paragraph()};
        m_writer.breakParagraph({.source = known.source,
                                 .isCopy = known.isCopy,
                                 .changes = std::move(opening.changes)});
        frame.lastPart = m_writer.paragraphsWritten();
        m_soft.push_back(std::move(soft));
    } else if (isFormat(element)) {
        frame.handle = m_writer.openFormat(std::move(opening));
    } else if (isLink(element)) {
        frame.handle = m_writer.openLink(std::move(opening));
    } else if (element != Element::Unknown && element != Element::HtmlBlock) {
        frame.handle = m_writer.openStructure(std::move(opening));
    }
    m_exact += frame.exact ? 1 : 0;
    m_frames.push_back(std::move(frame));
    alignCard(known);
    // A style that a browser put on the element itself works on what is in it.
    const std::uint32_t effects = pageEffects(m_page, known.page) & ~std::uint32_t{AlignBits};
    if (effects != 0 && !isRoot) {
        m_soft.emplace_back();
        addFormats(effects, m_soft.back());
        m_open.back().isSoft = true;
    }
}

/// Lets the lines that have come to stand right in a card have the alignment that it has on the
/// page, which a deck's card has not.
void Merger::alignCard(const KnownElement& known) {
    const std::uint32_t align = pageEffects(m_page, known.page) & AlignBits;
    if (m_known.outline().element(known.source) == Element::Card) {
        m_writer.breakParagraph({.align = align});
    }
}

/// The alignment of a paragraph that a browser wrote as a block for each of its lines, all aligned
/// alike; none if it is another one.
std::optional<std::uint32_t> Merger::alignOfLines(std::uint32_t paragraph) const {
    std::optional<std::uint32_t> align;
    for (std::uint32_t node = paragraph + 1; node < m_page[paragraph].next;
         node = m_page[node].next) {
        if (m_page[node].tag == PageTag::None && trimmed(m_page[node].text).empty()) {
            continue;
        }
        const bool isLine = (m_page[node].tag == PageTag::Div || m_page[node].tag == PageTag::P) &&
                            m_known.find(node) == nullptr;
        const std::uint32_t own = isLine ? pageEffects(m_page, node) & AlignBits : 0;
        if (!isLine || own == 0 || align.value_or(own) != own || holdsBlock(node)) {
            return std::nullopt;
        }
        align = own;
    }
    return align;
}

bool Merger::holdsBlock(std::uint32_t node) const {
    for (std::uint32_t at = node + 1; at < m_page[node].next; ++at) {
        if (isBlockTag(m_page[at].tag) && m_page[at].tag != PageTag::Br) {
            return true;
        }
    }
    return false;
}

/// The alignment that the page shows of a paragraph. One in several parts has that of all of them,
/// or else keeps its own: the parts that differ become paragraphs of their own.
std::uint32_t Merger::alignOnPage(const KnownElement& known) const {
    if (m_page[known.page].tag == PageTag::P) {
        const auto lines = alignOfLines(known.page);
        return lines ? *lines : pageEffects(m_page, known.page) & AlignBits;
    }
    const Tree::Id attribute = m_tree->attribute(known.source, u"align");
    const std::uint32_t own = attribute == Tree::none ? 0 : alignCode(m_tree->rawValue(attribute));
    std::optional<std::uint32_t> common;
    for (std::uint32_t node = known.page + 1; node < m_page[known.page].next;
         node = m_page[node].next) {
        if (m_page[node].tag == PageTag::P && m_page.attribute(node, partAttribute) != nullptr) {
            const std::uint32_t align = pageEffects(m_page, node) & AlignBits;
            if (common.value_or(align) != align) {
                return own;
            }
            common = align;
        }
    }
    return common.value_or(own);
}

AttributeChanges Merger::alignChange(const KnownElement& known, std::uint32_t align) const {
    const Tree::Id attribute = m_tree->attribute(known.source, u"align");
    const std::uint32_t own = attribute == Tree::none ? 0 : alignCode(m_tree->rawValue(attribute));
    if (align == own) {
        return {};
    }
    return {{u"align", std::u16string(alignName(align)), align == 0}};
}

/// The node that shows an attribute of `known`; the element's own if there is none.
std::uint32_t Merger::captionOf(const KnownElement& known) const {
    const bool isLabelled = m_page[known.page].tag == PageTag::Optgroup;
    const std::u16string_view name = shownAttribute(m_known.outline().element(known.source));
    for (std::uint32_t node = known.page + 1;
         !isLabelled && !name.empty() && node < m_page[known.page].next;
         node = m_page[node].tag == PageTag::H2 || m_known.isWrapper(node) ? node + 1
                                                                           : m_page[node].next) {
        if (m_page[node].tag != PageTag::None && m_page.value(node, textAttribute) == name) {
            return node;
        }
    }
    return known.page;
}

AttributeChanges Merger::captionChange(const KnownElement& known, std::uint32_t caption) const {
    const Element element = m_known.outline().element(known.source);
    const std::u16string_view name = shownAttribute(element);
    if (name.empty()) {
        return {};
    }
    const bool isMissing =
        caption == known.page && !isBox(element) && m_page[known.page].tag != PageTag::Optgroup;
    const std::u16string shown = isMissing ? std::u16string() : collapsed(textOf(caption));
    if (shown == collapsed(shownText(*m_tree, known.source, element))) {
        return {};
    }
    // A picture has to have its text.
    return {{std::u16string(name), shown, shown.empty() && element != Element::Img}};
}

std::u16string Merger::textOf(std::uint32_t node) const {
    std::u16string text(shownOnPage(m_page, node));
    const bool isLabelled = m_page[node].tag == PageTag::Optgroup;
    for (std::uint32_t at = node + 1; !isLabelled && at < m_page[node].next; ++at) {
        if (m_page[at].tag == PageTag::None) {
            text += m_page[at].text;
        } else if (m_page[at].tag == PageTag::Br) {
            text += u' ';
        } else {
            text += shownOnPage(m_page, at);
        }
    }
    return text;
}

/// What makes an anchor a link: a piece of it that was split off leads where the whole did.
std::u16string Merger::taskOf(Tree::Id anchor) const {
    const Tree& tree = *m_tree;
    std::u16string task;
    for (Tree::Id id = tree.firstContent(anchor); id < tree[anchor].next; id = tree[id].next) {
        const bool isTask =
            tree.kind(id) == NodeKind::Element && m_known.outline().element(id) == Element::Unseen;
        task += isTask ? withoutIds(id) : u"";
    }
    return task;
}

/// The source of an element without the ids in it, which the page has at another place too.
std::u16string Merger::withoutIds(Tree::Id id) const {
    const Tree& tree = *m_tree;
    std::u16string text;
    std::uint32_t at = tree[id].begin;
    for (Tree::Id node = id; node < tree[id].next; ++node) {
        if (tree.kind(node) == NodeKind::Attribute && tree.name(node) == u"id") {
            std::u16string_view ahead = tree.text().substr(at, tree[node].begin - at);
            while (!ahead.empty() && isBlank(ahead.back())) {
                ahead.remove_suffix(1);
            }
            text += ahead;
            at = tree[node].end;
        }
    }
    return text.append(tree.text().substr(at, tree[id].end - at));
}

} // namespace ravikit
