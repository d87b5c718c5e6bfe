#include "ravikit/convert/MergerCore.h"

#include <algorithm>
#include <utility>

/// Writing what the page has in a gap: what agrees with the source as the source has it, the rest
/// again.
namespace ravikit {

/// Whether the element that the gap is in is itself written, so that what belongs in it can be.
/// `amongText`: where its text goes.
bool Merger::ownsElements(bool amongText) const {
    const Frame& frame = m_frames.back();
    return frame.isParagraph ||
           (amongText ? m_writer.holdsText(frame.handle, isBare()) : m_writer.holds(frame.handle));
}

void Merger::writeItems(const std::vector<SharedRun>& shared) {
    if (!shared.empty()) {
        m_frames.back().usedAtoms = shared.back().before + shared.back().length;
    }
    std::size_t number = 0; // of the characters so far
    std::size_t next = 0;   // the first of `shared` that isn't written whole
    for (std::size_t i = 0; i < m_items.size();) {
        std::size_t end = i;
        while (end < m_items.size() && m_items[end].kind == Item::Kind::Character) {
            ++end;
        }
        if (end > i) {
            if (std::exchange(m_wantsBreak, false)) {
                m_writer.lineBreak(u"<br/>", isBare());
            }
            writeCharacterItems(i, end, number, shared, next);
            number += end - i;
            i = end;
            continue;
        }
        const Item item = m_items[i++];
        m_wantsBreak = item.kind == Item::Kind::Edge && (m_wantsBreak || m_isInLine);
        m_isInLine = !item.isBlock && (m_isInLine || item.kind == Item::Kind::Words);
        switch (item.kind) {
        case Item::Kind::Enter:
            if (!item.isBlock && !m_isInLine) {
                leadLine(i, number, shared);
            }
            openSoft(item.node);
            break;
        case Item::Kind::Leave:
            writeTaskInside(i);
            closeSoft();
            break;
        case Item::Kind::Words: {
            const Range range = m_ranges[item.node];
            writeCharacters(
                std::u16string_view(m_words).substr(range.begin, range.end - range.begin),
                isBare());
            break;
        }
        default:
            break;
        }
    }
}

/// Writes what isn't seen before the first character of a line, the item from `item` on with this
/// number, so that it stands before the formats around that character.
void Merger::leadLine(std::size_t item, std::size_t number, const std::vector<SharedRun>& shared) {
    while (item < m_items.size() && m_items[item].kind == Item::Kind::Enter &&
           !m_items[item].isBlock) {
        ++item;
    }
    const bool isText = item < m_items.size() && m_items[item].kind == Item::Kind::Character &&
                        m_items[item].unit != breakAtom;
    if (!isText || m_frames.back().known == nullptr || placeOfGap().noBlanks) {
        return;
    }
    std::size_t atom = 0;
    for (const SharedRun& run : shared) {
        if (run.after > number) {
            break;
        }
        atom = run.before + std::min(number - run.after, run.length);
    }
    if (canCopy(atom, 0)) {
        LineText line;
        addUnseenUpTo(atom, true, line);
        writeLine(line);
    }
}

/// Writes the task of a link that a format was put around into the format, if nothing else of the
/// link follows the item before `next`.
void Merger::writeTaskInside(std::size_t next) {
    const Frame& frame = m_frames.back();
    const bool isAnchor =
        frame.known != nullptr && m_known.outline().element(frame.known->source) == Element::Anchor;
    if (!isAnchor || endsAtAnchor() || frame.usedAtoms != frame.gap.atoms.size()) {
        return;
    }
    const bool isLast = std::all_of(
        m_items.begin() + static_cast<std::ptrdiff_t>(next), m_items.end(),
        [](const Item& item) { return item.kind == Item::Kind::Leave && !item.isBlock; });
    if (isLast) {
        LineText line;
        addUnseenUpTo(frame.gap.atoms.size(), true, line);
        writeLine(line);
    }
}

/// Writes the items [firstItem, behind), characters all, of which the first has this number: what
/// is shared as the source has it, the rest as new text.
void Merger::writeCharacterItems(std::size_t firstItem, std::size_t behind, std::size_t number,
                                 const std::vector<SharedRun>& shared, std::size_t& next) {
    const std::size_t limit = number + (behind - firstItem);
    const auto itemOf = [&](std::size_t character) { return firstItem + (character - number); };
    LineText line;
    for (std::size_t at = number; at < limit;) {
        while (next < shared.size() && shared[next].after + shared[next].length <= at) {
            ++next;
        }
        const bool isOver = next == shared.size();
        const std::size_t begin = isOver ? limit : std::min(shared[next].after, limit);
        if (begin > at) {
            const std::size_t atom =
                next == 0 ? 0 : shared[next - 1].before + shared[next - 1].length;
            const std::size_t nextAtom =
                isOver ? m_frames.back().gap.atoms.size() : shared[next].before;
            addUnseenForNew(itemOf(at), itemOf(begin), atom, nextAtom, line);
            addNew(itemOf(at), itemOf(begin), line);
            at = begin;
            m_isInLine = m_items[itemOf(at) - 1].unit != breakAtom;
            continue;
        }
        const SharedRun& run = shared[next];
        const std::size_t end = std::min(run.after + run.length, limit);
        const std::size_t atom = run.before + (at - run.after);
        const std::size_t joined = joinedTo(shared, next, number, firstItem, limit);
        const std::size_t word = hasTrivia(run.before + run.length, joined)
                                     ? wordBegin(itemOf(at), itemOf(end))
                                     : itemOf(end);
        addRun(itemOf(at), word, atom, line);
        if (word < itemOf(end)) {
            addUnseenUpTo(joined, true, line);
            addRun(word, itemOf(end), atom + (word - itemOf(at)), line);
        }
        at = end;
        m_isInLine = m_items[itemOf(at) - 1].unit != breakAtom;
    }
    writeLine(line);
}

/// The atom that the last of the runs begins with whose words the page has joined to the end of the
/// run `run`; 0 if there is none. The characters before `limit` count; the item `firstItem` is the
/// character `number`.
std::size_t Merger::joinedTo(const std::vector<SharedRun>& shared, std::size_t run,
                             std::size_t number, std::size_t firstItem, std::size_t limit) const {
    const auto isWordAt = [&](std::size_t character) {
        return isWordUnit(m_items[firstItem + (character - number)].unit);
    };
    std::size_t joined = 0;
    for (; run + 1 < shared.size(); ++run) {
        const std::size_t end = shared[run].after + shared[run].length;
        if (end >= limit || shared[run + 1].after != end || !isWordAt(end - 1) || !isWordAt(end)) {
            break;
        }
        joined = shared[run + 1].before;
        const std::size_t next = std::min(end + shared[run + 1].length, limit);
        for (std::size_t at = end; at < next; ++at) {
            if (!isWordAt(at)) {
                return joined;
            }
        }
    }
    return joined;
}

/// Whether something that isn't seen, but for blanks and elements, stands from the atom `first` up
/// to `last`.
bool Merger::hasTrivia(std::size_t first, std::size_t last) const {
    const Frame& frame = m_frames.back();
    const std::vector<Unseen>& unseen = frame.gap.unseen;
    for (std::size_t i = frame.usedUnseen; i < unseen.size() && unseen[i].before <= last; ++i) {
        if (unseen[i].before >= first && !unseen[i].isBlank && !unseen[i].isElement) {
            return true;
        }
    }
    return false;
}

/// Where the word begins that the items [first, end) end with.
std::size_t Merger::wordBegin(std::size_t first, std::size_t end) const {
    while (end > first && isWordUnit(m_items[end - 1].unit)) {
        --end;
    }
    return end;
}

void Merger::writeLine(LineText& line) {
    if (!line.isEmpty()) {
        m_writer.text(line.take(), isBare());
        noteTask();
    }
}

/// Adds what isn't seen and goes before the new text of the items, which stands in place of the
/// atoms [atom, nextAtom): the blanks that lead its line, and what would stand inside of a word
/// after it.
void Merger::addUnseenForNew(std::size_t firstItem, std::size_t behind, std::size_t atom,
                             std::size_t nextAtom, LineText& line) {
    const Frame& frame = m_frames.back();
    if (frame.known == nullptr || placeOfGap().noBlanks || !canCopy(atom, 0)) {
        return;
    }
    for (std::size_t i = behind; i < m_items.size() && m_items[i].kind != Item::Kind::Character;
         ++i) {
        if (m_items[i].isBlock) {
            return; // it leads a line after this one
        }
    }
    const std::vector<SourceAtom>& atoms = frame.gap.atoms;
    const auto isWordAt = [&](std::size_t at) {
        return at < atoms.size() && isWordUnit(atoms[at].unit);
    };
    const bool beginsLine = firstItem == 0 || (m_items[firstItem - 1].kind == Item::Kind::Character
                                                   ? m_items[firstItem - 1].unit == breakAtom
                                                   : m_items[firstItem - 1].isBlock);
    const bool endsInWord = isWordAt(nextAtom) && isWordUnit(m_items[behind - 1].unit);
    if (isWordAt(atom) || (beginsLine && (!atoms.empty() || placeOfGap().edgeBefore)) ||
        (endsInWord && nextAtom > atom)) {
        addUnseenUpTo(atom, true, line);
    }
    if (endsInWord && nextAtom > atom) {
        addUnseenUpTo(nextAtom, true, line);
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

/// Whether the source has a line break before `atom` that the page has no more, so that what comes
/// there goes on the line of what was written before.
bool Merger::isJoined(std::size_t atom) const {
    const Frame& frame = m_frames.back();
    const auto atoms = frame.gap.atoms.begin();
    const bool isAtJoint = atom < frame.gap.atoms.size() && frame.gap.atoms[atom].unit == jointAtom;
    return m_isInLine &&
           (isAtJoint ||
            std::any_of(atoms + static_cast<std::ptrdiff_t>(std::min(frame.copiedAtoms, atom)),
                        atoms + static_cast<std::ptrdiff_t>(atom), [](const SourceAtom& one) {
                            return one.unit == breakAtom || one.unit == jointAtom;
                        }));
}

/// Whether what isn't seen goes with the piece of its paragraph that is being written: of several
/// the one that has the words before it, and the last has all that is left.
bool Merger::belongsHere(const Unseen& one) const {
    const Frame& frame = m_frames.back();
    if (frame.known == nullptr || frame.known->isUnchanged) {
        return true;
    }
    // A paragraph of which no word is left went with all that it held.
    const auto atoms = frame.gap.atoms.begin();
    const bool isGone = frame.isEnding && one.before > frame.copiedAtoms &&
                        std::any_of(atoms + static_cast<std::ptrdiff_t>(frame.copiedAtoms),
                                    atoms + static_cast<std::ptrdiff_t>(one.before),
                                    [](const SourceAtom& atom) { return atom.unit == jointAtom; });
    if (isGone) {
        return false;
    }
    const auto pieces = m_pieces.find(frame.known->source);
    if (pieces == m_pieces.end()) {
        return !frame.known->isCopy;
    }
    const bool isAfterCut = !frame.known->isCopy || one.begin >= pieces->second.cut;
    const bool isLastPiece = pieces->second.left == (frame.known->isCopy ? 1U : 0U);
    return isAfterCut && (isLastPiece || !frame.isEnding || one.begin <= frame.copiedTo);
}

/// Up to where, at most `end`, the source of the atoms from `begin` on can be copied in one piece.
std::size_t Merger::copyEnd(std::size_t begin, std::size_t end) const {
    const Frame& frame = m_frames.back();
    for (std::size_t i = frame.usedUnseen; i < frame.gap.unseen.size(); ++i) {
        const Unseen& one = frame.gap.unseen[i];
        if (one.before >= end) {
            break;
        }
        if (!one.isBlank && one.before > begin && !belongsHere(one)) {
            return std::min(one.before, end);
        }
    }
    return end;
}

/// Copies the characters of the items from the source, where they begin at `atom`.
void Merger::addRun(std::size_t firstItem, std::size_t behind, std::size_t atom, LineText& line) {
    if (!canCopy(atom, behind - firstItem)) {
        addNew(firstItem, behind, line);
        return;
    }
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
    addNew(firstItem, firstItem + (begin - atom), line);
    while (begin < end) {
        const std::size_t stop = copyEnd(begin, end);
        const SourceAtom& first = atoms[begin];
        const SourceAtom& last = atoms[stop - 1];
        addUnseenUpTo(begin, true, line);
        line.copy(m_tree->text().substr(first.begin, last.end - first.begin), first.section,
                  last.endSection);
        std::size_t& next = m_frames.back().usedUnseen;
        const std::vector<Unseen>& unseen = m_frames.back().gap.unseen;
        for (; next < unseen.size() && unseen[next].before < stop; ++next) {
            m_frames.back().hasTask |= unseen[next].isElement; // those inside came along
        }
        begin = stop;
        m_frames.back().copiedAtoms = stop;
        m_frames.back().copiedTo = last.end;
    }
    addNew(firstItem + (end - atom), behind, line);
}

void Merger::addNew(std::size_t firstItem, std::size_t behind, LineText& line) {
    std::u16string& text = m_newText;
    text.clear();
    const auto add = [&] {
        if (text.empty() || line.writeInSection(text)) {
            text.clear();
            return;
        }
        m_buffer.clear();
        if (!appendCharacters(m_buffer, text)) {
            drop(u"a character that XML has no place for");
        }
        line.write(m_buffer);
        text.clear();
    };
    for (std::size_t i = firstItem; i < behind; ++i) {
        const char32_t item = m_items[i].unit;
        const char32_t unit = item >= exactBlank ? item - exactBlank : item;
        if (unit == breakAtom) {
            add();
            writeLine(line);
            m_writer.lineBreak(u"<br/>", isBare());
        } else if (unit == u'\n') {
            text += m_lineEnd;
        } else {
            text += static_cast<char16_t>(unit);
        }
    }
    add();
}

void Merger::writeCharacters(std::u16string_view text, bool bare) {
    if (text.empty()) {
        return;
    }
    m_buffer.clear();
    if (!appendCharacters(m_buffer, text)) {
        drop(u"a character that XML has no place for");
    }
    m_writer.text(m_buffer, bare);
}

/// Adds what isn't seen before `atom` and was not written yet; of blanks only those right before
/// it, or before something else that comes along. Where lines were joined a blank would show.
void Merger::addUnseenUpTo(std::size_t atom, bool keepsLastBlank, LineText& line) {
    Frame& frame = m_frames.back();
    const bool isJoined = this->isJoined(atom);
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
        const bool kept =
            one.isBlank ? !isJoined && (one.before == atom || (leads && belongsHere(unseen[next])))
                        : belongsHere(one);
        frame.hasTask = frame.hasTask || (kept && one.isElement);
        if (kept && !one.isBlank) {
            frame.copiedTo = std::max(frame.copiedTo, one.end);
        }
        if (kept) {
            line.copy(m_tree->text().substr(one.begin, one.end - one.begin), one.section,
                      one.endSection);
        }
    }
}

void Merger::writeUnseen(std::size_t atom, bool keepsLastBlank) {
    LineText line;
    addUnseenUpTo(atom, keepsLastBlank, line);
    if (line.isEmpty()) {
        return;
    }
    if (m_frames.back().isParagraph && m_writer.paragraphsWritten() == m_frames.back().lastPart) {
        m_writer.forceParagraph();
    }
    m_writer.unseen(line.take(), m_frames.back().handle);
    noteTask();
}

/// Lets the writer know if what was written last brought the task of a link with it.
void Merger::noteTask() {
    if (std::exchange(m_frames.back().hasTask, false)) {
        m_writer.noteTask();
    }
}

} // namespace ravikit
