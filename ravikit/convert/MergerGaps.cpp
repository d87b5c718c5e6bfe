#include "ravikit/convert/MergerCore.h"
#include "ravikit/html/Style.h"
#include "ravikit/text/Chars.h"

#include <algorithm>

namespace ravikit {

namespace {

/// Where the page has a no-break space in place of a blank of the source, and no more, it is that
/// blank: browsers write the one for the other.
void takeAsBlanks(std::vector<SharedRun>& runs, std::u32string_view source,
                  std::u32string_view shown) {
    std::vector<SharedRun> joined{{0, 0, 0}};
    runs.push_back({source.size(), shown.size(), 0});
    for (const SharedRun& run : runs) {
        SharedRun& last = joined.back();
        const std::size_t before = last.before + last.length;
        const std::size_t after = last.after + last.length;
        const bool isBlank = run.before == before + 1 && run.after == after + 1 &&
                             source[before] == u' ' && shown[after] == u'\u00A0';
        if (isBlank || (run.before == before && run.after == after)) {
            last.length += (isBlank ? 1 : 0) + run.length;
        } else {
            joined.push_back(run);
        }
    }
    std::erase_if(joined, [](const SharedRun& run) { return run.length == 0; });
    runs = std::move(joined);
}

/// The characters that both texts begin with, or else end with; `used` of the source are not free.
std::vector<SharedRun> sharedEnd(std::u32string_view source, std::u32string_view shown,
                                 bool atBegin, std::size_t used) {
    const std::size_t free = std::min(source.size() - used, shown.size());
    std::size_t length = 0;
    while (length < free &&
           (atBegin ? source[length] == shown[length]
                    : source[source.size() - 1 - length] == shown[shown.size() - 1 - length])) {
        ++length;
    }
    return {{atBegin ? 0 : source.size() - length, atBegin ? 0 : shown.size() - length, length}};
}

} // namespace

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
    frame.usedAtoms = frame.copiedAtoms = frame.usedUnseen = 0;
    frame.gap.clear();
    if (frame.known == nullptr) {
        return;
    }
    const Tree::Id id = frame.known->source;
    if (m_known.outline().isFlat(id)) {
        return; // its elements are not on the page one by one
    }
    std::vector<Tree::Id> parts{id};
    const std::vector<Tree::Id> joined = m_known.joins().joinedTo(id);
    parts.insert(parts.end(), joined.begin(), joined.end());
    const auto partOf = [&](Tree::Id anchor) {
        const auto after = std::upper_bound(parts.begin(), parts.end(), anchor);
        return static_cast<std::size_t>(after - parts.begin()) - 1;
    };
    const std::size_t first = frame.lastAnchor == Tree::none ? 0 : partOf(frame.lastAnchor);
    const std::size_t last =
        endsAtAnchor() ? partOf(m_known.anchor(frame.nextAnchor)) : parts.size() - 1;
    for (std::size_t part = first; part <= last; ++part) {
        readPart(parts[part], part == first, part == last);
    }
}

/// Reads what of the gap stands in `part`, the element or a paragraph that was joined to it.
void Merger::readPart(Tree::Id part, bool isFirst, bool isLast) {
    Frame& frame = m_frames.back();
    const Tree& tree = *m_tree;
    GapPlace place = placeOfGap();
    place.edgeBefore = place.edgeBefore || !isFirst;
    place.edgeAfter = place.edgeAfter || !isLast;
    const bool isFromAnchor = isFirst && frame.lastAnchor != Tree::none;
    const ParagraphJoins& joins = m_known.joins();
    const bool isJoined = part != frame.known->source;
    const Tree::Id begin = isJoined ? tree.firstContent(part) : joins.contentBegin(part, tree);
    const Tree::Id end = isJoined ? joins.headEnd(part, tree) : tree[part].next;
    const Tree::Id first = isFromAnchor ? tree[frame.lastAnchor].next : begin;
    const Tree::Id behind = isLast && endsAtAnchor() ? m_known.anchor(frame.nextAnchor) : end;
    Gap gap;
    readGap(tree, m_known.outline(), first, behind, place, gap);
    if (!isFirst) {
        frame.gap.atoms.push_back({jointAtom});
    }
    for (Unseen& one : gap.unseen) {
        one.before += frame.gap.atoms.size();
    }
    frame.gap.atoms.insert(frame.gap.atoms.end(), gap.atoms.begin(), gap.atoms.end());
    frame.gap.unseen.insert(frame.gap.unseen.end(), gap.unseen.begin(), gap.unseen.end());
}

void Merger::flush(bool isLast, bool beforeBlock) {
    const bool isFirst = !m_frames.back().isGapOpen;
    const bool isSomewhere = m_frames.back().known != nullptr;
    if (isFirst) {
        if (!isLast && m_items.empty() && !isSomewhere) {
            return;
        }
        openGap();
    }
    GapPlace place = placeOfGap();
    // In a place for elements only, what is inline makes a line of text.
    place.edgeBefore = isFirst ? place.edgeBefore || place.noBlanks : m_frames.back().isAfterBlock;
    place.edgeAfter = isLast ? place.edgeAfter || place.noBlanks : beforeBlock;
    m_frames.back().isAfterBlock = beforeBlock;
    const bool isAtEnd = isLast && isSomewhere && !endsAtAnchor();
    dropFillers(place, place.edgeAfter || (isAtEnd && endsBlock()));
    normaliseItems(place);
    const std::vector<SharedRun> shared = compare(isFirst, isLast);
    const std::vector<SourceAtom>& atoms = m_frames.back().gap.atoms;
    const bool onlyUnseen = std::all_of(atoms.begin(), atoms.end(), [](const SourceAtom& atom) {
        return atom.unit == removedAtom || atom.unit == jointAtom;
    });
    const bool isBegin = m_frames.back().lastAnchor == Tree::none;
    if (isSomewhere && onlyUnseen && isBegin && !m_frames.back().isParagraph &&
        (!m_items.empty() || !isLast)) {
        // What a card begins with, such as a timer, stays before all.
        writeUnseen(0, false);
    }
    m_isInLine = !place.edgeBefore;
    m_wantsBreak = false;
    writeItems(shared);
    if (m_wantsBreak && !place.edgeAfter) {
        m_writer.lineBreak(u"<br/>", isBare());
    }
    m_isInLine = m_isInLine && !place.edgeAfter;
    m_items.clear();
    m_ranges.clear();
    m_words.clear();
    if (isLast) {
        if (isSomewhere) {
            m_frames.back().isEnding = !endsAtAnchor();
            writeUnseen(m_frames.back().gap.atoms.size(), true);
        }
        m_frames.back().isGapOpen = false;
    }
}

/// Whether nothing is shown after the innermost frame's element up to the end of the block that it
/// is in.
bool Merger::endsBlock() const {
    std::uint32_t at = m_page[m_frames.back().known->page].next;
    for (auto open = m_open.rbegin(); open != m_open.rend(); ++open) {
        while (at < open->next && m_page[at].tag == PageTag::None &&
               trimmed(m_page[at].text).empty()) {
            ++at;
        }
        if (at < open->next) {
            return false;
        }
        if (isBlockTag(m_page[open->node].tag)) {
            return true;
        }
    }
    return true;
}

/// Takes out the line breaks that browsers write at the end of a block, where they show nothing, so
/// that a caret can be there. `isAtEnd`: the items end where a block does.
void Merger::dropFillers(const GapPlace& place, bool isAtEnd) {
    if (place.exact) {
        return;
    }
    const std::vector<SourceAtom>& atoms = m_frames.back().gap.atoms;
    std::size_t inSource = 0; // of the breaks at the end of the source's line
    for (std::size_t i = atoms.size(); i-- > 0;) {
        if (atoms[i].unit != breakAtom && atoms[i].unit != removedAtom) {
            break;
        }
        inSource += atoms[i].unit == breakAtom ? 1U : 0U;
    }
    const auto isBreak = [](const Item& item) {
        return item.kind == Item::Kind::Character && item.unit == breakAtom;
    };
    const auto isBlankItem = [](const Item& item) {
        return item.kind == Item::Kind::Character && item.unit == u' ';
    };
    const auto isInlineTag = [this](std::size_t i) {
        const Item::Kind kind = m_items[i].kind;
        return (kind == Item::Kind::Enter || kind == Item::Kind::Leave) && !m_items[i].isBlock;
    };
    bool isLast = true;
    bool isFollowed = false;
    for (std::size_t i = m_items.size(); i-- > 0; isFollowed = isFollowed || !isInlineTag(i)) {
        const Item& item = m_items[i]; // a break before `isAtEnd` is at the end of its block
        if (isBreak(item) && isAtEnd) {
            std::size_t count = 0;
            std::size_t first = i;
            while (first < m_items.size() && (isBreak(m_items[first]) || isInlineTag(first))) {
                count += isBreak(m_items[first]) ? 1U : 0U;
                first = first == 0 ? m_items.size() : first - 1;
            }
            // A line of its own between two blocks is one to be seen.
            const bool isAlone = first < m_items.size()
                                     ? m_items[first].isBlock && !m_items[first].isBegin
                                     : place.edgeBefore && isFollowed;
            m_items[i].isDropped = count > (isLast ? inSource : 0) && !isAlone;
            isAtEnd = isLast = false;
        } else if (item.kind == Item::Kind::Character || item.kind == Item::Kind::Words) {
            isAtEnd = isAtEnd && isBlankItem(item);
            isLast = isLast && isBlankItem(item);
        } else if (item.isBlock) {
            isAtEnd = true;
        }
    }
    std::erase_if(m_items, [](const Item& item) { return item.isDropped; });
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
    const bool none = place.noBlanks && (place.edgeBefore || place.edgeAfter) &&
                      std::none_of(m_items.begin(), m_items.end(), [&](const Item& item) {
                          return item.kind == Item::Kind::Character && !isBlankItem(item);
                      });
    bool edge = place.edgeAfter;
    for (std::size_t i = m_items.size(); i-- > 0;) {
        if (isBlankItem(m_items[i])) {
            m_items[i].isDropped = edge || none;
        } else if (m_items[i].kind == Item::Kind::Words) {
            edge = trimEnd(m_items[i], edge);
        } else if (m_items[i].kind == Item::Kind::Character || isEdge(m_items[i])) {
            edge = isEdge(m_items[i]);
        }
    }
    edge = place.edgeBefore;
    std::size_t kept = 0;
    for (const Item& item : m_items) {
        const bool blank = isBlankItem(item);
        const bool dropped = item.isDropped || (blank && edge);
        if (item.kind == Item::Kind::Words) {
            edge = trimBegin(item, edge);
        } else if (blank) {
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

/// Takes the blank off at the end if it stands at an edge. Whether what is ahead stands at one.
bool Merger::trimEnd(const Item& words, bool isAtEdge) {
    Range& range = m_ranges[words.node];
    if (isAtEdge && range.begin != range.end && m_words[range.end - 1] == u' ') {
        --range.end;
    }
    return isAtEdge && range.begin == range.end;
}

/// The same at the begin, where a blank is an edge for the next.
bool Merger::trimBegin(const Item& words, bool isAtEdge) {
    Range& range = m_ranges[words.node];
    if (isAtEdge && range.begin != range.end && m_words[range.begin] == u' ') {
        ++range.begin;
    }
    return range.begin == range.end ? isAtEdge : m_words[range.end - 1] == u' ';
}

/// What of the source's text the page's still has. A gap that comes in several goes, around what
/// the source has elsewhere, is compared at its begin and its end alone.
std::vector<SharedRun> Merger::compare(bool isFirst, bool isLast) const {
    const Frame& frame = m_frames.back();
    const std::vector<SourceAtom>& atoms = frame.gap.atoms;
    if (atoms.empty() || (!isFirst && !isLast)) {
        return {};
    }
    std::u32string source;
    for (const SourceAtom& atom : atoms) {
        source += atom.unit;
    }
    std::u32string shown;
    for (const Item& item : m_items) {
        if (item.kind == Item::Kind::Character) {
            shown += item.unit;
        }
    }
    std::vector<SharedRun> runs = isFirst && isLast
                                      ? sharedRuns(source, shown)
                                      : sharedEnd(source, shown, isFirst, frame.usedAtoms);
    takeAsBlanks(runs, source, shown);
    return runs;
}

} // namespace ravikit
