#include "ravikit/Chars.h"
#include "ravikit/Reference.h"
#include "ravikit/convert/MergerCore.h"

#include <algorithm>

namespace ravikit {

/// Whether `id` ends the line of text around it.
bool Merger::isBlockSource(Tree::Id id) const {
    const Element e = m_known.outline().element(id);
    return e == Element::HtmlBlock || (e >= Element::Wml && e <= Element::Fieldset) ||
           m_known.outline().holdsBlock(id);
}

/// Whether text may stand here without a paragraph, since the source has it so.
bool Merger::isBare() const {
    const Frame& frame = m_frames.back();
    if (frame.known == nullptr || !m_writer.isInnermost(frame.handle)) {
        return false;
    }
    const Element e = m_known.outline().element(frame.known->source);
    return !holdsElementsOnly(e) || m_known.outline().isBare(frame.known->source);
}

/// Whether the element that the gap is in is itself written, so that what belongs in it can be.
/// `amongText`: where its text goes.
bool Merger::ownsElements(bool amongText) const {
    const Frame& frame = m_frames.back();
    return frame.isParagraph ||
           (amongText ? m_writer.holdsText(frame.handle, isBare()) : m_writer.holds(frame.handle));
}

bool Merger::endsAtAnchor() const {
    const Frame& frame = m_frames.back();
    return frame.nextAnchor < frame.known->behindAnchors;
}

GapPlace Merger::placeOfGap() const {
    const Frame& frame = m_frames.back();
    GapPlace place;
    if (frame.known == nullptr) {
        place.edgeBefore = place.edgeAfter = true;
        return place;
    }
    const Tree::Id id = frame.known->source;
    const Element e = m_known.outline().element(id);
    const bool block = isBlockSource(id);
    place.exact = m_exact > 0;
    place.noBlanks = holdsElementsOnly(e) && !m_known.outline().isBare(id);
    place.edgeBefore =
        frame.lastAnchor == Tree::none ? block : !place.exact && isBlockSource(frame.lastAnchor);
    place.edgeAfter = endsAtAnchor() ? isBlockSource(m_known.anchor(frame.nextAnchor)) : block;
    return place;
}

/// Reads what the source has between the last anchor and the next.
void Merger::openGap() {
    Frame& frame = m_frames.back();
    frame.isGapOpen = true;
    frame.usedAtoms = frame.usedUnseen = 0;
    frame.gap.clear();
    if (frame.known == nullptr) {
        return;
    }
    const Tree& tree = *m_tree;
    const Tree::Id id = frame.known->source;
    if (m_known.outline().isFlat(id)) {
        return; // its elements are not on the page one by one
    }
    const Tree::Id first =
        frame.lastAnchor == Tree::none ? tree.firstContent(id) : tree[frame.lastAnchor].next;
    const Tree::Id behind = endsAtAnchor() ? m_known.anchor(frame.nextAnchor) : tree[id].next;
    readGap(tree, m_known.outline(), first, behind, placeOfGap(), frame.gap);
}

void Merger::flush(bool isLast, bool beforeBlock) {
    const bool isFirst = !m_frames.back().isGapOpen;
    if (isFirst) {
        if (!isLast && m_items.empty() && m_frames.back().known == nullptr) {
            return;
        }
        openGap();
    }
    GapPlace place = placeOfGap();
    place.edgeBefore = isFirst ? place.edgeBefore : m_frames.back().isAfterBlock;
    place.edgeAfter = isLast ? place.edgeAfter : beforeBlock;
    m_frames.back().isAfterBlock = beforeBlock;
    normaliseItems(place);
    const auto [prefix, suffix] = compare(isFirst, isLast);
    const std::vector<SourceAtom>& atoms = m_frames.back().gap.atoms;
    const bool onlyUnseen = std::all_of(atoms.begin(), atoms.end(), [](const SourceAtom& atom) {
        return atom.unit == removedAtom;
    });
    const bool isSomewhere = m_frames.back().known != nullptr;
    const bool isBegin = m_frames.back().lastAnchor == Tree::none;
    if (isSomewhere && onlyUnseen && isBegin && !m_frames.back().isParagraph &&
        (!m_items.empty() || !isLast)) {
        // What a card begins with, such as a timer, stays ahead of all.
        writeUnseen(0, false);
    }
    writeItems(prefix, suffix);
    m_items.clear();
    if (isLast) {
        if (isSomewhere) {
            writeUnseen(m_frames.back().gap.atoms.size(), true);
        }
        m_frames.back().isGapOpen = false;
    }
}

/// Takes out the blanks that don't count.
void Merger::normaliseItems(const GapPlace& place) {
    if (place.exact) {
        const auto isCharacter = [](const Item& item) {
            return item.kind == Item::Kind::Character;
        };
        const auto isText = [&](const Item& item) {
            return isCharacter(item) && item.unit != u'\n';
        };
        if (place.edgeBefore) { // what new elements begin in it too
            const auto first = std::find_if(m_items.begin(), m_items.end(), isText);
            m_items.erase(std::remove_if(m_items.begin(), first, isCharacter), first);
        }
        return;
    }
    const auto isBlankItem = [](const Item& item) {
        return item.kind == Item::Kind::Character && item.unit == u' ';
    };
    const auto isEdge = [](const Item& item) {
        return item.kind == Item::Kind::Character ? item.unit == breakAtom : item.isBlock;
    };
    const bool none =
        place.noBlanks && std::none_of(m_items.begin(), m_items.end(), [&](const Item& item) {
            return item.kind == Item::Kind::Character && !isBlankItem(item);
        });
    bool edge = place.edgeAfter || place.noBlanks;
    for (std::size_t i = m_items.size(); i-- > 0;) {
        if (isBlankItem(m_items[i])) {
            m_items[i].isDropped = edge || none;
        } else if (m_items[i].kind == Item::Kind::Character || isEdge(m_items[i])) {
            edge = isEdge(m_items[i]);
        }
    }
    edge = place.edgeBefore || place.noBlanks;
    std::size_t kept = 0;
    for (const Item& item : m_items) {
        const bool blank = isBlankItem(item);
        const bool dropped = item.isDropped || (blank && edge);
        if (blank) {
            edge = true; // of several one counts
        } else if (item.kind == Item::Kind::Character || isEdge(item)) {
            edge = isEdge(item);
        }
        if (!dropped) {
            m_items[kept++] = item;
        }
    }
    m_items.resize(kept);
}

/// How many characters at the begin and at the end of the page's text are the source's.
std::pair<std::size_t, std::size_t> Merger::compare(bool isFirst, bool isLast) const {
    const Frame& frame = m_frames.back();
    const std::vector<SourceAtom>& atoms = frame.gap.atoms;
    if (atoms.empty()) {
        return {0, 0};
    }
    std::vector<char32_t> units;
    units.reserve(m_items.size());
    for (const Item& item : m_items) {
        if (item.kind == Item::Kind::Character) {
            units.push_back(item.unit);
        }
    }
    std::size_t prefix = 0;
    while (isFirst && prefix < units.size() && prefix < atoms.size() &&
           units[prefix] == atoms[prefix].unit) {
        ++prefix;
    }
    while (prefix > 0 && prefix < atoms.size() && atoms[prefix].glued) {
        --prefix;
    }
    const std::size_t used = std::max(prefix, frame.usedAtoms);
    std::size_t suffix = 0;
    while (isLast && suffix < units.size() - prefix && suffix < atoms.size() - used &&
           units[units.size() - 1 - suffix] == atoms[atoms.size() - 1 - suffix].unit) {
        ++suffix;
    }
    while (suffix > 0 && atoms[atoms.size() - suffix].glued) {
        --suffix;
    }
    return {prefix, suffix};
}

void Merger::writeItems(std::size_t prefix, std::size_t suffix) {
    Frame& frame = m_frames.back();
    const auto characters = static_cast<std::size_t>(
        std::count_if(m_items.begin(), m_items.end(),
                      [](const Item& item) { return item.kind == Item::Kind::Character; }));
    const std::size_t behindNew = characters - suffix;
    const std::size_t atomShift = frame.gap.atoms.size() - characters;
    frame.usedAtoms = std::max(frame.usedAtoms, prefix);
    std::size_t number = 0;
    for (std::size_t i = 0; i < m_items.size();) {
        if (m_items[i].kind == Item::Kind::Enter) {
            openSoft(m_items[i++].node);
            continue;
        }
        if (m_items[i].kind == Item::Kind::Edge) {
            ++i;
            continue;
        }
        if (m_items[i].kind == Item::Kind::Leave) {
            closeSoft();
            ++i;
            continue;
        }
        std::size_t end = i;
        const std::size_t first = number;
        const std::size_t limit = first < prefix      ? prefix
                                  : first < behindNew ? behindNew
                                                      : characters;
        while (end < m_items.size() && m_items[end].kind == Item::Kind::Character &&
               number < limit) {
            ++end;
            ++number;
        }
        if (first < prefix) {
            writeRun(i, end, first);
        } else if (first < behindNew) {
            writeNew(i, end);
        } else {
            writeRun(i, end, first + atomShift);
        }
        i = end;
    }
}

/// Whether the source of `count` atoms can stand where the text at hand goes.
bool Merger::canCopy(std::size_t atom, std::size_t count) const {
    const Gap& gap = m_frames.back().gap;
    const auto from = gap.atoms.begin() + static_cast<std::ptrdiff_t>(atom);
    const bool hasElement = std::any_of(gap.unseen.begin(), gap.unseen.end(),
                                        [](const Unseen& one) { return one.isElement; });
    const bool hasBreak = std::any_of(from, from + static_cast<std::ptrdiff_t>(count),
                                      [](const SourceAtom& one) { return one.unit == breakAtom; });
    return (!hasElement || ownsElements(true)) && (!hasBreak || m_writer.takesBreaks(isBare()));
}

/// Copies the characters of the items from the source, where they begin at `atom`.
void Merger::writeRun(std::size_t firstItem, std::size_t behind, std::size_t atom) {
    if (!canCopy(atom, behind - firstItem)) {
        writeNew(firstItem, behind);
        return;
    }
    // The frame may move while what is written opens others.
    const std::vector<SourceAtom>& atoms = m_frames.back().gap.atoms;
    std::size_t begin = atom;
    std::size_t end = atom + (behind - firstItem);
    // What is written in one with its neighbours can't be cut.
    while (begin < end && atoms[begin].glued) {
        ++begin;
    }
    while (end > begin && end < atoms.size() && atoms[end].glued) {
        --end;
    }
    writeNew(firstItem, firstItem + (begin - atom));
    if (begin < end) {
        m_buffer = unseenUpTo(begin, true);
        m_buffer +=
            m_tree->text().substr(atoms[begin].begin, atoms[end - 1].end - atoms[begin].begin);
        std::size_t& next = m_frames.back().usedUnseen;
        const std::vector<Unseen>& unseen = m_frames.back().gap.unseen;
        while (next < unseen.size() && unseen[next].before < end) {
            ++next; // those inside came along
        }
        m_writer.text(m_buffer, isBare());
    }
    writeNew(firstItem + (end - atom), behind);
}

void Merger::writeNew(std::size_t firstItem, std::size_t behind) {
    std::u16string& text = m_newText;
    text.clear();
    const bool bare = isBare();
    const auto write = [&] {
        if (!text.empty()) {
            m_buffer.clear();
            if (!appendCharacters(m_buffer, text)) {
                drop(u"a character that XML has no place for");
            }
            m_writer.text(m_buffer, bare);
            text.clear();
        }
    };
    for (std::size_t i = firstItem; i < behind; ++i) {
        const char32_t item = m_items[i].unit;
        const char32_t unit = item >= exactBlank ? item - exactBlank : item;
        if (unit == breakAtom) {
            write();
            m_writer.lineBreak(u"<br/>", bare);
        } else if (unit == u'\n') {
            text += m_lineEnd;
        } else {
            text += static_cast<char16_t>(unit);
        }
    }
    write();
}

/// What isn't seen ahead of `atom` and was not written yet; of blanks only those right
/// ahead, of it or of something else that comes along.
std::u16string Merger::unseenUpTo(std::size_t atom, bool keepsLastBlank) {
    Frame& frame = m_frames.back();
    const bool isSplit = frame.known != nullptr && frame.known->isCopy && !frame.known->isUnchanged;
    std::u16string text;
    const std::vector<Unseen>& unseen = frame.gap.unseen;
    std::size_t end = frame.usedUnseen;
    while (end < unseen.size() && unseen[end].before <= atom) {
        ++end;
    }
    if (!keepsLastBlank && end > frame.usedUnseen && unseen[end - 1].isBlank) {
        --end; // it waits for what comes next
    }
    for (; frame.usedUnseen < end; ++frame.usedUnseen) {
        const Unseen& one = unseen[frame.usedUnseen];
        const std::size_t next = frame.usedUnseen + 1;
        const bool leads =
            next < unseen.size() && !unseen[next].isBlank && unseen[next].before == one.before;
        if (one.isElement && !ownsElements(false)) {
            continue;
        }
        const bool kept = one.isBlank ? one.before == atom || (leads && !isSplit) : !isSplit;
        if (kept) {
            text += m_tree->text().substr(one.begin, one.end - one.begin);
        }
    }
    return text;
}

void Merger::writeUnseen(std::size_t atom, bool keepsLastBlank) {
    const std::u16string text = unseenUpTo(atom, keepsLastBlank);
    if (text.empty()) {
        return;
    }
    if (m_frames.back().isParagraph) {
        m_writer.forceParagraph();
    }
    m_writer.unseen(text, m_frames.back().handle);
}

} // namespace ravikit
