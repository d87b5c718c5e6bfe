#include "ravikit/convert/writing/DeckWriter.h"
#include "ravikit/html/Style.h"

/// What stands open in the text that is written, and how it comes to be what is wanted.
namespace ravikit {

namespace {

/// What stands between lines of text inside `block`, which has no paragraphs.
std::u16string_view lineSeparator(Element block) {
    switch (block) {
    case Element::Td:
    case Element::Fieldset:
        return u"<br/>";
    case Element::Pre:
        return u"\n";
    default:
        return u" ";
    }
}

} // namespace

/// Writes an element that nothing stands in.
void DeckWriter::writeEmpty(std::size_t index) {
    Chain& chain = m_chain;
    if (!m_open.findInside(index, chain) || chain.back().isLoose) {
        return;
    }
    chain.pop_back();
    openExactly(chain);
    OpenElements::Entry& entry = m_open[index];
    const Opening& opening = entry.opening;
    if (!entry.isInPlace && opening.element == Element::Card) {
        m_out += indentation(chain, chain.size());
    }
    m_out += startTag(m_tree, opening, opening.isCopy, true);
    if (opening.source == Tree::none || !m_tree->has(opening.source, EmptyTag)) {
        m_out += endTag(m_tree, opening);
    }
    entry.isWritten = true;
    if (!chain.empty()) {
        m_open[chain.back().entry].hasText = true;
    }
}

/// Makes `chain` stand open for something that is to be written: on a line of its own if what is
/// around it waits for that.
void DeckWriter::openFor(const Chain& chain) {
    for (std::size_t i = chain.size(); i-- > 0;) {
        OpenElements::Entry& block = m_open[chain[i].entry];
        if (isFormat(chain[i].element) || isLink(chain[i].element)) {
            continue;
        }
        if (!chain[i].isAdded && block.wantsBreak) {
            block.wantsBreak = false;
            openExactly(Chain(chain.begin(), chain.begin() + static_cast<std::ptrdiff_t>(i + 1)));
            m_out += lineSeparator(block.opening.element);
        }
        break;
    }
    openExactly(chain);
    for (const Standing& one : chain) {
        if (!one.isAdded) {
            m_open[one.entry].hasText = true;
        }
    }
}

DeckWriter::Written DeckWriter::identity(const Standing& standing) const {
    const OpenElements::Entry& entry = m_open[standing.entry];
    if (!standing.isAdded) {
        return {entry.handle, entry.instance, Element::Unknown, {}};
    }
    // A card that was added goes on until there is another.
    return {entry.handle, standing.element == Element::Card ? 0 : entry.line, standing.element, {}};
}

bool DeckWriter::isOpen(const Standing& standing) const {
    const Written sought = identity(standing);
    for (const Written& one : m_written) {
        if (one.handle == sought.handle && one.number == sought.number &&
            one.added == sought.added) {
            return true;
        }
    }
    return false;
}

/// Closes and opens until `chain` stands open in what is written, and nothing else.
void DeckWriter::openExactly(const Chain& chain) {
    std::size_t common = 0;
    for (; common < chain.size() && common < m_written.size(); ++common) {
        const Written sought = identity(chain[common]);
        const Written& one = m_written[common];
        if (one.handle != sought.handle || one.number != sought.number ||
            one.added != sought.added) {
            break;
        }
    }
    closeWritten(common);
    for (std::size_t i = common; i < chain.size(); ++i) {
        writeStart(chain, i);
    }
}

/// Closes the innermost until `left` are open.
void DeckWriter::closeWritten(std::size_t left) {
    while (m_written.size() > left) {
        m_out += m_written.back().task;
        m_out += m_written.back().endTag;
        m_written.pop_back();
    }
}

void DeckWriter::writeStart(const Chain& chain, std::size_t index) {
    const Standing& standing = chain[index];
    const Element e = standing.element;
    OpenElements::Entry& entry = m_open[standing.entry];
    const bool isAgain = !standing.isAdded && entry.isWritten;
    const bool isInPlace = !standing.isAdded && entry.isInPlace && !isAgain;
    const Opening opening = openingOf(standing);
    std::u16string end = endTag(m_tree, opening);
    const bool isNew = opening.source == Tree::none;
    if (index > 0 && !isInPlace && (e == Element::P || e == Element::Pre || e == Element::Card)) {
        const std::u16string indent = indentation(chain, index);
        m_out += indent;
        end.insert(0, isNew && e == Element::Card ? indent : std::u16string());
    } else if (e == Element::Wml && isNew) {
        end.insert(0, m_lineEnd);
    }
    m_out += startTag(m_tree, opening, opening.isCopy || isAgain, false);
    Written written = identity(standing);
    written.endTag = std::move(end);
    written.task = opening.task;
    m_written.push_back(std::move(written));
    if (!standing.isAdded) {
        m_out += entry.waiting;
        entry.waiting.clear();
        entry.isWritten = true;
    }
    if (index > 0 && !chain[index - 1].isAdded) {
        m_open[chain[index - 1].entry].hasText = true;
    }
}

Opening DeckWriter::openingOf(const Standing& standing) {
    if (!standing.isAdded) {
        return m_open[standing.entry].opening;
    }
    if (standing.element != Element::P) {
        return {.element = standing.element};
    }
    const bool isForText = standing.addedFor == static_cast<std::uint32_t>(npos);
    return nextParagraph(isForText ? m_paragraph : m_open[standing.addedFor].around);
}

Opening DeckWriter::nextParagraph(Paragraph& paragraph) {
    ++m_paragraphs;
    Opening opening{.element = Element::P,
                    .source = paragraph.source,
                    .isCopy = paragraph.isCopy,
                    .changes = paragraph.changes};
    if (paragraph.source != Tree::none && !m_begun.insert(paragraph.source).second) {
        opening.isCopy = true;
    }
    if (paragraph.align != 0) {
        opening.tag = u"<p align=\"" + std::u16string(alignName(paragraph.align)) + u"\">";
    }
    return opening;
}

/// The line end and blanks before a child of the innermost deck or card of the first `index`.
std::u16string DeckWriter::indentation(const Chain& chain, std::size_t index) const {
    for (std::size_t i = index; i-- > 0;) {
        if (chain[i].element == Element::Card || chain[i].element == Element::Wml) {
            const std::u16string& indent = m_open[chain[i].entry].indent;
            return chain[i].isAdded && !indent.empty() ? indent + u"  " : indent;
        }
    }
    return {};
}

/// The line end and blanks before a child of what is to be opened: nothing if the source has its
/// elements side by side.
std::u16string DeckWriter::indentInside(const Opening& opening) const {
    if (opening.element != Element::Wml && opening.element != Element::Card) {
        return {};
    }
    if (opening.source != Tree::none) {
        return childIndentation(*m_tree, opening.source);
    }
    const Chain& chain = m_open.chain();
    const std::u16string outer = chain.empty() ? m_lineEnd : indentation(chain, chain.size());
    return outer.empty() ? outer : outer + u"  ";
}

} // namespace ravikit
