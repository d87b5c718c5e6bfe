#include "ravikit/convert/MergerCore.h"

#include <algorithm>

/// Writing what the page has in a gap: what agrees with the source as the source has it, the rest
/// anew.
namespace ravikit {

/// Whether the element that the gap is in is itself written, so that what belongs in it can be.
/// `amongText`: where its text goes.
bool Merger::ownsElements(bool amongText) const {
    const Frame& frame = m_frames.back();
    return frame.isParagraph ||
           (amongText ? m_writer.holdsText(frame.handle, isBare()) : m_writer.holds(frame.handle));
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
        if (m_items[i].kind == Item::Kind::Words) {
            const Range range = m_ranges[m_items[i++].node];
            writeCharacters(
                std::u16string_view(m_words).substr(range.begin, range.end - range.begin),
                isBare());
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

/// Whether the element that the gap is in was split off another, which has what isn't seen.
bool Merger::isSplitOff() const {
    const KnownElement* const known = m_frames.back().known;
    return known != nullptr && known->isCopy && !known->isUnchanged;
}

/// Up to where, at most `end`, the source of the atoms from `begin` on can be copied in one piece.
std::size_t Merger::copyEnd(std::size_t begin, std::size_t end) const {
    const Frame& frame = m_frames.back();
    for (std::size_t i = frame.usedUnseen; isSplitOff() && i < frame.gap.unseen.size(); ++i) {
        const Unseen& one = frame.gap.unseen[i];
        if (!one.isBlank && one.before > begin) {
            return std::min(one.before, end);
        }
    }
    return end;
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
    while (begin < end) {
        const std::size_t stop = copyEnd(begin, end);
        m_buffer = unseenUpTo(begin, true);
        m_buffer +=
            m_tree->text().substr(atoms[begin].begin, atoms[stop - 1].end - atoms[begin].begin);
        std::size_t& next = m_frames.back().usedUnseen;
        const std::vector<Unseen>& unseen = m_frames.back().gap.unseen;
        while (next < unseen.size() && unseen[next].before < stop) {
            ++next; // those inside came along
        }
        m_writer.text(m_buffer, isBare());
        begin = stop;
    }
    writeNew(firstItem + (end - atom), behind);
}

void Merger::writeNew(std::size_t firstItem, std::size_t behind) {
    std::u16string& text = m_newText;
    text.clear();
    const bool bare = isBare();
    const auto write = [&] {
        writeCharacters(text, bare);
        text.clear();
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

/// What isn't seen ahead of `atom` and was not written yet; of blanks only those right
/// ahead, of it or of something else that comes along.
std::u16string Merger::unseenUpTo(std::size_t atom, bool keepsLastBlank) {
    Frame& frame = m_frames.back();
    const bool isSplit = isSplitOff();
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
