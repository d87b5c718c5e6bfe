#include "ravikit/convert/DeckWriter.h"

#include "ravikit/convert/Style.h"

#include <algorithm>

namespace ravikit {

namespace {

constexpr bool holdsText(Element e) {
    return e == Element::P || e == Element::Td || e == Element::Fieldset || e == Element::Pre ||
           e == Element::Option || e == Element::Unknown || e == Element::HtmlBlock;
}

constexpr bool isInline(Element e) {
    return isFormat(e) || isLink(e) || e == Element::Img;
}

/// What stands between lines of text inside `structure`, which has no paragraphs.
std::u16string_view lineSeparator(Element structure) {
    switch (structure) {
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

/// Formats and links that nothing holds in their place.
bool DeckWriter::isFloat(const Entry& entry) {
    return !entry.inPlace && (isFormat(entry.opening.element) || isLink(entry.opening.element));
}

DeckWriter::Handle DeckWriter::insert(std::size_t at, Opening opening, bool inPlace, bool implied) {
    if (m_entries.size() >= mostOpen) {
        return 0;
    }
    Entry entry{.opening = std::move(opening),
                .handle = ++m_lastHandle,
                .instance = ++m_lastInstance,
                .inPlace = inPlace,
                .implied = implied};
    if (entry.opening.element == Element::Wml || entry.opening.element == Element::Card) {
        entry.indent = indentOf(entry, at);
    }
    m_entries.insert(m_entries.begin() + static_cast<std::ptrdiff_t>(at), std::move(entry));
    return m_lastHandle;
}

std::size_t DeckWriter::indexOf(Handle handle) const {
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        if (m_entries[i].handle == handle) {
            return i;
        }
    }
    return npos;
}

/// The innermost element that isn't a float; npos if there is none.
std::size_t DeckWriter::structureIndex() const {
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        if (!isFloat(m_entries[i]) && m_entries[i].suspended == 0) {
            return i;
        }
    }
    return npos;
}

bool DeckWriter::isInside(Element element) const {
    return std::any_of(m_entries.begin(), m_entries.end(),
                       [=](const Entry& e) { return e.opening.element == element; });
}

bool DeckWriter::isInnermost(Handle handle) const {
    std::size_t at = m_entries.size();
    while (at > 0 && (isFloat(m_entries[at - 1]) || m_entries[at - 1].implied)) {
        --at;
    }
    return handle != 0 && at > 0 && m_entries[at - 1].handle == handle &&
           m_entries[at - 1].suspended == 0;
}

DeckWriter::Handle DeckWriter::openInPlace(Opening opening) {
    const Element e = opening.element;
    dropImplied(e == Element::Card);
    std::size_t at = m_entries.size();
    bool inLink = false;
    while (at > 0 && isFloat(m_entries[at - 1])) {
        --at; // what the page has around it that the source has not
        inLink = inLink || isLink(m_entries[at].opening.element);
    }
    if (inLink && (isFormat(e) || isLink(e))) {
        return isLink(e) ? openLink(std::move(opening)) : openFormat(std::move(opening));
    }
    at = isFormat(e) || isLink(e) ? m_entries.size() : at;
    return insert(at, std::move(opening), true, false);
}

DeckWriter::Handle DeckWriter::openFormat(Opening opening) {
    std::size_t at = m_entries.size();
    for (std::size_t i = at; i-- > 0;) {
        const Entry& entry = m_entries[i];
        const Element e = entry.opening.element;
        if (entry.suspended != 0) {
            continue;
        }
        if (e == opening.element) {
            return 0; // it is so already
        }
        if (isLink(e)) {
            at = i; // a link may not hold it, but it may hold the link
        } else if (!isFormat(e)) {
            const bool takes = accepts(e, opening.element) || e == Element::Card ||
                               e == Element::Wml || e == Element::Table || e == Element::Tr ||
                               e == Element::Unknown || e == Element::HtmlBlock;
            return takes ? insert(at, std::move(opening), false, false) : 0;
        }
    }
    return insert(at, std::move(opening), false, false);
}

DeckWriter::Handle DeckWriter::openLink(Opening opening) {
    const bool taken = std::any_of(m_entries.begin(), m_entries.end(),
                                   [](const Entry& e) { return isLink(e.opening.element); });
    const bool noPlace = isInside(Element::Option) || isInside(Element::Select);
    return taken || noPlace ? 0 : insert(m_entries.size(), std::move(opening), false, false);
}

/// Opened right inside the innermost element that takes it. Formats stay around its content; what
/// else stands between the two is closed for as long.
DeckWriter::Handle DeckWriter::openStructure(Opening opening) {
    std::size_t at = placeOf(opening.element, Tree::none);
    if (at == npos) {
        return 0;
    }
    dropImplied(opening.element == Element::Card);
    at = prepareLeaf(opening.element, Tree::none);
    if (at == npos) {
        return 0;
    }
    const Handle handle = insert(at, std::move(opening), false, false);
    for (std::size_t i = handle == 0 ? m_entries.size() : at + 1; i < m_entries.size(); ++i) {
        if (!isFloat(m_entries[i]) || isLink(m_entries[i].opening.element)) {
            ++m_entries[i].suspended;
        }
    }
    return handle;
}

void DeckWriter::close(Handle handle) {
    const std::size_t index = handle == 0 ? npos : indexOf(handle);
    if (index == npos) {
        return;
    }
    const bool isStructure = !isFloat(m_entries[index]);
    for (std::size_t i = m_entries.size(); isStructure && i-- > index + 1;) {
        if (m_entries[i].implied) {
            m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
    const Element e = m_entries[index].opening.element;
    if (e == Element::Wml && !m_entries[index].hasText) { // a deck has a card
        imply(index + 1, Element::Card);
        synchronise(m_entries.size());
        dropImplied(true);
    } else if (!m_entries[index].written && !m_entries[index].isEmptied && isStructure &&
               m_entries[index].suspended == 0) {
        if (m_entries[index].inPlace ? e != Element::Select && e != Element::Table &&
                                           e != Element::Tr && e != Element::Optgroup
                                     : e == Element::Td || e == Element::Card) {
            writeEmpty(index);
        }
    }
    if (!m_entries[index].inPlace && isStructure) {
        for (std::size_t i = index + 1; i < m_entries.size(); ++i) {
            if (m_entries[i].suspended != 0) {
                --m_entries[i].suspended;
            }
        }
    }
    closeWritten(handle);
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(index));
    if (isStructure) {
        addParagraphAround(index);
    }
}

/// What stands open again behind a structure may have lost the paragraph that was added for it.
void DeckWriter::addParagraphAround(std::size_t from) {
    for (std::size_t i = from; i < m_entries.size(); ++i) {
        if (isFloat(m_entries[i]) || m_entries[i].suspended != 0) {
            continue;
        }
        std::size_t outer = i;
        while (outer > 0 &&
               (isFloat(m_entries[outer - 1]) || m_entries[outer - 1].suspended != 0)) {
            --outer;
        }
        const Element e = m_entries[i].opening.element;
        const Element around = outer > 0 ? m_entries[outer - 1].opening.element : Element::Unknown;
        if ((around != Element::Card && around != Element::Wml) || m_entries[i].inPlace ||
            accepts(around, e)) {
            return;
        }
        if (around == Element::Wml) {
            imply(outer++, Element::Card);
        }
        if (accepts(Element::P, e)) {
            imply(outer, Element::P);
        }
        return;
    }
}

std::vector<DeckWriter::Handle> DeckWriter::suspendSizes() {
    std::vector<Handle> sizes;
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        Entry& entry = m_entries[i];
        const Element e = entry.opening.element;
        if (!isFormat(e) && !isLink(e)) {
            break; // around a table a size can't be taken back for one cell
        }
        if (e == Element::Big || e == Element::Small) {
            ++entry.suspended;
            entry.isEmptied = true;
            sizes.push_back(entry.handle);
        }
    }
    return sizes;
}

void DeckWriter::resumeSizes(const std::vector<Handle>& sizes) {
    for (const Handle handle : sizes) {
        if (const std::size_t index = indexOf(handle); index != npos) {
            --m_entries[index].suspended;
        }
    }
}

void DeckWriter::breakParagraph(Paragraph next) {
    dropImplied();
    m_paragraph = std::move(next);
    const std::size_t index = structureIndex();
    if (index == npos) {
        return;
    }
    Entry& entry = m_entries[index];
    if (entry.opening.element == Element::P) {
        if (entry.hasText) {
            entry.instance = ++m_lastInstance; // the next text opens it anew
            entry.hasText = false;
        }
    } else {
        entry.wantsBreak = entry.hasText && holdsText(entry.opening.element);
    }
}

void DeckWriter::forceParagraph() {
    const std::size_t index = structureIndex();
    const Element e = index == npos ? Element::Unknown : m_entries[index].opening.element;
    if (e == Element::Card || e == Element::Wml) {
        prepareText(false);
    }
}

void DeckWriter::imply(std::size_t at, Element element) {
    Opening opening{.element = element};
    if (element == Element::P) {
        ++m_paragraphs;
        opening.source = m_paragraph.source;
        opening.isCopy = m_paragraph.isCopy;
        opening.changes = m_paragraph.changes;
        if (m_paragraph.align != 0) {
            opening.tag = u"<p align=\"" + std::u16string(alignName(m_paragraph.align)) + u"\">";
        }
        m_paragraph.isCopy = true;
    }
    insert(at, std::move(opening), false, true);
}

/// Ends what was added for the text at hand; a card that was added goes on unless `cards`.
void DeckWriter::dropImplied(bool cards) {
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        if (m_entries[i].suspended != 0) {
            continue;
        }
        const bool isCard = m_entries[i].opening.element == Element::Card;
        if (m_entries[i].implied && (cards || !isCard)) {
            m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(i));
        } else if (!isFloat(m_entries[i])) {
            return;
        }
    }
}

/// Adds what a text needs around it, and a line break if it is to stand apart.
void DeckWriter::prepareText(bool bare) {
    addContainer(bare);
    synchronise(m_entries.size());
}

void DeckWriter::addContainer(bool bare) {
    for (;;) {
        const std::size_t index = structureIndex();
        if (index == npos) {
            break;
        }
        const Element e = m_entries[index].opening.element;
        if (bare || holdsText(e) || isFormat(e) || isLink(e)) {
            breakInside(index);
            m_entries[index].hasText = true;
            break;
        }
        const Element missing = e == Element::Wml                                ? Element::Card
                                : e == Element::Table                            ? Element::Tr
                                : e == Element::Tr                               ? Element::Td
                                : e == Element::Select || e == Element::Optgroup ? Element::Option
                                                                                 : Element::P;
        const std::size_t before = m_entries.size();
        imply(index + 1, missing);
        if (m_entries.size() == before) {
            break;
        }
    }
}

void DeckWriter::breakInside(std::size_t structure) {
    Entry& entry = m_entries[structure];
    if (entry.wantsBreak && !isFormat(entry.opening.element) && !isLink(entry.opening.element)) {
        entry.wantsBreak = false;
        synchronise(structure + 1);
        m_out += lineSeparator(entry.opening.element);
    }
}

/// Where an element of this kind can stand: behind how many of the open ones. In a deck or card
/// that lacks a paragraph for it, behind the card. npos if there is no place.
std::size_t DeckWriter::placeOf(Element element, Tree::Id parent) const {
    std::size_t inFloat = npos; // the innermost of those around the line of text that takes it
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        const Entry& entry = m_entries[i];
        const Element e = entry.opening.element;
        if (entry.suspended != 0) {
            continue;
        }
        if (isFloat(entry)) {
            const bool takes = isInline(element) && accepts(e, element);
            inFloat = takes && inFloat == npos ? i + 1 : inFloat;
            continue;
        }
        if (inFloat != npos && (accepts(e, element) || holdsElementsOnly(e)) &&
            e != Element::Select && e != Element::Optgroup) {
            return inFloat;
        }
        if (accepts(e, element) || (parent != Tree::none && entry.opening.source == parent)) {
            return i + 1;
        }
        if (e == Element::Card || e == Element::Wml) {
            if (element == Element::Card) {
                return i > 0 ? i : npos; // beside the one at hand
            }
            const bool fits =
                accepts(Element::P, element) || element == Element::P || element == Element::Pre;
            return fits ? i + 1 : npos;
        }
        // A cell or an option is left for nothing; what doesn't fit is turned into text.
        if (e == Element::Option || (e == Element::Td && element != Element::Card)) {
            return npos;
        }
    }
    return npos;
}

std::size_t DeckWriter::prepareLeaf(Element element, Tree::Id parent) {
    std::size_t at = placeOf(element, parent);
    if (at == npos || at == 0) {
        return at;
    }
    const Element e = m_entries[at - 1].opening.element;
    const bool fits =
        accepts(e, element) || (parent != Tree::none && m_entries[at - 1].opening.source == parent);
    if (!fits) {
        if (e == Element::Wml) {
            imply(at++, Element::Card);
        }
        if (!accepts(Element::Card, element)) {
            imply(at++, Element::P);
        }
    }
    return std::min(at, m_entries.size());
}

void DeckWriter::text(std::u16string_view escaped, bool bare) {
    prepareText(bare);
    m_out += escaped;
}

void DeckWriter::lineBreak(std::u16string_view tag, bool bare) {
    prepareText(bare);
    const std::size_t index = structureIndex();
    const Element e = index == npos ? Element::Unknown : m_entries[index].opening.element;
    m_out += e == Element::Option ? std::u16string_view(u" ") : tag;
}

bool DeckWriter::leaf(Element element, std::u16string_view markup, Tree::Id parent) {
    if (element == Element::P || element == Element::Pre || element == Element::Card ||
        (element == Element::Do && !isInside(Element::P))) {
        dropImplied(element == Element::Card);
    }
    if (const std::size_t top = structureIndex();
        top != npos && m_entries[top].implied &&
        !accepts(m_entries[top].opening.element, element)) {
        dropImplied();
    }
    const std::size_t around = structureIndex();
    if (around != npos && isInline(element) &&
        (parent == Tree::none || m_entries[around].opening.source != parent)) {
        addContainer(false);
    }
    const std::size_t at = prepareLeaf(element, parent);
    if (at == npos) {
        return false;
    }
    if (at > 0) {
        breakInside(at - 1);
        m_entries[at - 1].hasText = true;
    }
    synchronise(at);
    const Element outer = at == 0 ? Element::Unknown : m_entries[at - 1].opening.element;
    if (parent == Tree::none && (outer == Element::Card || outer == Element::Wml)) {
        m_out += m_entries[at - 1].indent;
    }
    m_out += markup;
    return true;
}

void DeckWriter::unseen(std::u16string_view markup, Handle handle) {
    std::size_t index = handle == 0 ? npos : indexOf(handle);
    if (index != npos && m_entries[index].suspended == 0) {
        if (isFloat(m_entries[index])) {
            addContainer(false);
            index = indexOf(handle);
        }
        synchronise(index + 1);
    }
    m_out += markup;
}

std::u16string_view DeckWriter::indentation() const {
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        const Element e = m_entries[i].opening.element;
        if (e == Element::Card || e == Element::Wml) {
            return m_entries[i].indent;
        }
    }
    return {};
}

/// Closes an element in what is written, if it stands open there, and all in it.
void DeckWriter::closeWritten(Handle handle) {
    std::size_t at = m_written.size();
    while (at > 0 && m_written[at - 1].handle != handle) {
        --at;
    }
    while (at > 0 && m_written.size() >= at) {
        m_out += m_written.back().endTag;
        m_written.pop_back();
    }
}

/// Finds which of the first `limit` entries count: not those that are suspended, and no format
/// where the element around the text takes none.
void DeckWriter::findEffective(std::size_t limit) {
    std::vector<std::size_t>& indices = m_effective;
    indices.clear();
    Element structure = Element::Unknown;
    for (std::size_t i = 0; i < limit; ++i) {
        const Entry& entry = m_entries[i];
        const Element e = entry.opening.element;
        if (entry.suspended != 0) {
            continue;
        }
        if (!isFloat(entry)) {
            structure = isFormat(e) || isLink(e) ? structure : e;
        } else if (structure != Element::Unknown && structure != Element::HtmlBlock &&
                   structure != Element::Card && !accepts(structure, e)) {
            continue;
        }
        // What was added for a text gives way to what was closed for it and is open again.
        while (!isFloat(entry) && !indices.empty() && m_entries[indices.back()].implied &&
               !accepts(m_entries[indices.back()].opening.element, e)) {
            indices.pop_back();
        }
        indices.push_back(i);
    }
}

/// Closes and opens until of the entries the first `limit` stand open in what is written.
void DeckWriter::synchronise(std::size_t limit) {
    findEffective(limit);
    openEffective();
}

void DeckWriter::openEffective() {
    const std::vector<std::size_t>& indices = m_effective;
    std::size_t common = 0;
    while (common < indices.size() && common < m_written.size() &&
           m_written[common].handle == m_entries[indices[common]].handle &&
           m_written[common].instance == m_entries[indices[common]].instance) {
        ++common;
    }
    while (m_written.size() > common) {
        m_out += m_written.back().endTag;
        m_written.pop_back();
    }
    for (std::size_t i = common; i < indices.size(); ++i) {
        writeStart(m_entries[indices[i]], indices[i]);
    }
}

void DeckWriter::writeStart(Entry& entry, std::size_t index) {
    const Element e = entry.opening.element;
    const bool again = entry.written;
    std::u16string end = endTag(entry.opening);
    if (index > 0 && (!entry.inPlace || again) &&
        (e == Element::P || e == Element::Pre || e == Element::Card)) {
        for (std::size_t i = index; i-- > 0;) {
            const Element outer = m_entries[i].opening.element;
            if (outer == Element::Card || outer == Element::Wml) {
                m_out += m_entries[i].indent;
                if (e == Element::Card && entry.opening.source == Tree::none) {
                    end.insert(0, m_entries[i].indent);
                }
                break;
            }
        }
    } else if (e == Element::Wml && !entry.inPlace) {
        end = m_lineEnd + end;
    }
    if (index > 0) {
        m_entries[index - 1].hasText = true;
    }
    m_out += startTag(entry.opening, entry.opening.isCopy || again, false);
    entry.written = true;
    m_written.push_back({entry.handle, entry.instance, std::move(end)});
}

/// Writes an element that nothing stands in.
void DeckWriter::writeEmpty(std::size_t index) {
    // What gives way to it is closed, but the element itself is not opened: it may be one tag.
    findEffective(index + 1);
    if (!m_effective.empty() && m_effective.back() == index) {
        m_effective.pop_back();
    }
    openEffective();
    Entry& entry = m_entries[index];
    const bool isEmptyTag =
        entry.opening.source != Tree::none && m_tree->has(entry.opening.source, EmptyTag);
    if (!entry.inPlace && entry.opening.element == Element::Card) {
        m_out += indentation();
    }
    if (index > 0) {
        m_entries[index - 1].hasText = true;
    }
    m_out += startTag(entry.opening, entry.opening.isCopy, true);
    if (!isEmptyTag) {
        m_out += endTag(entry.opening);
    }
    entry.written = true;
}

} // namespace ravikit
