#include "ravikit/convert/writing/DeckWriter.h"

#include "ravikit/html/Style.h"

#include <algorithm>

namespace ravikit {

namespace {

constexpr bool holdsLines(Element e) {
    return e == Element::Td || e == Element::Fieldset || e == Element::Pre ||
           e == Element::Option || e == Element::Unknown || e == Element::HtmlBlock;
}

/// Whether one in its place may stand there with nothing in it.
constexpr bool mayBeEmpty(Element e) {
    return e != Element::Select && e != Element::Table && e != Element::Tr &&
           e != Element::Optgroup;
}

} // namespace

DeckWriter::Handle DeckWriter::openInPlace(Opening opening) {
    if (m_open.isInsideLooseLink() && isFormat(opening.element)) {
        return openFormat(std::move(opening));
    }
    if (m_open.isInsideLooseLink() && isLink(opening.element)) {
        return openLink(std::move(opening));
    }
    std::u16string indent = indentInside(opening);
    return m_open.push(
        {.opening = std::move(opening), .isInPlace = true, .indent = std::move(indent)});
}

bool DeckWriter::isInnermost(Handle handle) const {
    const std::size_t index = m_open.find(handle);
    return index != npos && m_open.innermost() == index;
}

DeckWriter::Handle DeckWriter::openFormat(Opening opening) {
    return m_open.hasFormat(opening.element) ? 0 : m_open.push({.opening = std::move(opening)});
}

DeckWriter::Handle DeckWriter::openLink(Opening opening) {
    const bool noPlace =
        m_open.isInsideLink() || isInside(Element::Option) || isInside(Element::Select);
    return noPlace ? 0 : m_open.push({.opening = std::move(opening)});
}

DeckWriter::Handle DeckWriter::openStructure(Opening opening) {
    if (!m_open.takesStructure(opening.element)) {
        return 0;
    }
    std::u16string indent = indentInside(opening);
    return m_open.push(
        {.opening = std::move(opening), .indent = std::move(indent), .around = m_paragraph});
}

DeckWriter::Handle DeckWriter::openWithout(std::uint32_t effects) {
    return m_open.emptyFormats(effects) ? m_open.push({.takesOff = effects}) : 0;
}

bool DeckWriter::close(Handle handle) {
    const std::size_t index = m_open.find(handle);
    if (index == npos) {
        return false;
    }
    while (m_open.size() > index + 1) {
        close(m_open[m_open.size() - 1].handle);
    }
    const OpenElements::Entry& entry = m_open[index];
    const Element e = entry.opening.element;
    if (e == Element::Wml && !entry.hasText) { // a deck has a card
        m_chain = m_open.chain();
        m_chain.push_back({.element = Element::Card,
                           .entry = static_cast<std::uint32_t>(index),
                           .isAdded = true});
        openFor(m_chain);
    } else if (!entry.isWritten && !entry.isEmptied &&
               (entry.isInPlace ? mayBeEmpty(e) : e == Element::Td || e == Element::Card)) {
        writeEmpty(index);
    }
    std::size_t last = m_written.size(); // of its pieces, if it stands open
    while (last > 0 && (m_written[last - 1].handle != handle ||
                        m_written[last - 1].added != Element::Unknown)) {
        --last;
    }
    closeWritten(last > 0 ? last : m_written.size());
    m_out += isBetweenPieces(index) ? entry.waiting : std::u16string();
    closeWritten(last > 0 ? last - 1 : m_written.size());
    const bool isWritten = entry.isWritten;
    m_open.pop();
    return isWritten;
}

void DeckWriter::breakParagraph(Paragraph next) {
    m_paragraph = std::move(next);
    const std::size_t index = m_open.innermostBlock();
    if (index == npos) {
        return;
    }
    OpenElements::Entry& block = m_open[index];
    ++block.line;
    if (block.opening.element == Element::P && block.isInPlace) {
        alignLine(block);
    }
    if (block.opening.element != Element::P) {
        block.wantsBreak = block.hasText && holdsLines(block.opening.element);
    } else if (block.hasText) {
        ++block.instance; // the next text opens it again
        block.hasText = false;
    }
}

/// Gives the next paragraph that `block` is split into the alignment of its line.
void DeckWriter::alignLine(OpenElements::Entry& block) const {
    AttributeChanges& changes = block.opening.changes;
    std::erase_if(changes, [](const AttributeChange& one) { return one.isOfLine; });
    if (m_paragraph.align != 0) {
        changes.insert(changes.begin(), {.name = u"align",
                                         .value = std::u16string(alignName(m_paragraph.align)),
                                         .isOfLine = true});
    }
}

void DeckWriter::forceParagraph() {
    const std::size_t index = m_open.innermost();
    const Element e = index == npos ? Element::Unknown : m_open[index].opening.element;
    if (e == Element::Card || e == Element::Wml) {
        openForText(false);
    }
}

void DeckWriter::openForText(bool bare) {
    m_open.findForText(bare, m_chain);
    openFor(m_chain);
}

void DeckWriter::text(std::u16string_view escaped, bool bare) {
    openForText(bare);
    m_out += escaped;
}

void DeckWriter::lineBreak(std::u16string_view tag, bool bare) {
    openForText(bare);
    const bool isOption = !m_chain.empty() && m_chain.back().element == Element::Option;
    m_out += isOption ? std::u16string_view(u" ") : tag;
    const std::size_t block = m_open.innermostBlock();
    if (block != npos && holdsLines(m_open[block].opening.element)) {
        m_open[block].hasText = false; // the next line begins here: it needs no other break
    }
}

bool DeckWriter::takesBreaks(bool bare) const {
    Chain chain;
    m_open.findForText(bare, chain);
    return chain.empty() || chain.back().element != Element::Option;
}

bool DeckWriter::leaf(Element element, std::u16string_view markup, Tree::Id parent) {
    bool inLine = false;
    if (element == Element::Do) { // into the paragraph at hand, but not into one of its own
        m_open.findForText(false, m_chain);
        inLine = !m_chain.empty() && isOpen(m_chain.back());
    }
    if (!m_open.findForLeaf(element, parent, inLine, m_chain)) {
        return false;
    }
    openFor(m_chain);
    if (const Element outer = m_chain.back().element;
        parent == Tree::none && (outer == Element::Card || outer == Element::Wml)) {
        m_out += indentation(m_chain, m_chain.size());
    }
    m_out += markup;
    return true;
}

bool DeckWriter::canPlace(Element element) const {
    Chain chain;
    return m_open.findForLeaf(element, Tree::none, false, chain);
}

bool DeckWriter::holds(Handle handle) const {
    const std::size_t index = m_open.find(handle);
    Chain chain;
    m_open.findForText(false, chain);
    return std::any_of(chain.begin(), chain.end(),
                       [=](const Standing& one) { return one.entry == index && !one.isAdded; });
}

bool DeckWriter::holdsText(Handle handle, bool bare) const {
    const std::size_t index = m_open.find(handle);
    Chain chain;
    m_open.findForText(bare, chain);
    return !chain.empty() && chain.back().entry == index && !chain.back().isAdded;
}

void DeckWriter::unseen(std::u16string_view markup, Handle handle) {
    const std::size_t index = m_open.find(handle);
    if (index != npos && !m_open[index].isWritten && !mayBeEmpty(m_open[index].opening.element)) {
        m_open[index].waiting += markup; // it may come to nothing
        return;
    }
    if (index != npos && isBetweenPieces(index)) {
        m_open[index].waiting += markup; // for the next piece, or else it ends the one before
        return;
    }
    if (m_open.findInside(index, m_chain) || (m_written.empty() && m_open.findInside(0, m_chain))) {
        openExactly(m_chain);
    }
    m_out += markup;
}

/// Whether a paragraph was written that a line of its own has ended, and nothing stands in the
/// next.
bool DeckWriter::isBetweenPieces(std::size_t index) const {
    const OpenElements::Entry& entry = m_open[index];
    return entry.opening.element == Element::P && entry.isWritten && entry.isInPlace &&
           !isOpen({.element = Element::P, .entry = static_cast<std::uint32_t>(index)});
}

void DeckWriter::noteTask() {
    for (Written& one : m_written) {
        one.task.clear();
    }
}

} // namespace ravikit
