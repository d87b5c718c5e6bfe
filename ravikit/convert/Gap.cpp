#include "ravikit/convert/Gap.h"

#include "ravikit/text/Chars.h"

namespace ravikit {

namespace {

class GapReader {
public:
    GapReader(const Tree& tree, const GapPlace& place, Gap& gap)
        : m_tree(tree)
        , m_place(place)
        , m_gap(gap) {}

    void read(const Outline& outline, Tree::Id first, Tree::Id behind) {
        for (Tree::Id id = first; id < behind; id = m_tree[id].next) {
            const bool isElement = m_tree.kind(id) == NodeKind::Element;
            if (outline.isBreak(id)) {
                add({breakAtom, m_tree[id].begin, m_tree[id].end});
            } else if (isElement && outline.isShown(id)) {
                noteRemoved();
            } else if (isElement) {
                addUnseen(m_tree[id].begin, m_tree[id].end, false);
                m_gap.unseen.back().isElement = true;
            } else if (outline.isUnseen(id)) {
                addUnseen(m_tree[id].begin, m_tree[id].end, false);
            } else {
                readNode(id);
            }
        }
        dropDoubledBlanks();
        trimEdges();
    }

private:
    void readNode(Tree::Id id) {
        const Node& node = m_tree[id];
        switch (m_tree.kind(id)) {
        case NodeKind::Text:
        case NodeKind::Blank:
            addText(node.begin, node.end, 0);
            break;
        case NodeKind::CData:
            addSection(id);
            break;
        case NodeKind::Reference: {
            const std::u16string characters = m_tree.referenceText(id);
            addWhole(node, characters.empty() ? m_tree.source(id) : characters);
            break;
        }
        default:
            addUnseen(node.begin, node.end, false);
        }
    }

    /// Text that stands in the source as it is.
    void addText(std::uint32_t begin, std::uint32_t end, Tree::Id section) {
        for (std::uint32_t at = begin; at < end;) {
            const bool crLf =
                at + 1 < end && m_tree.text()[at] == u'\r' && m_tree.text()[at + 1] == u'\n';
            const std::uint32_t to = at + (crLf ? 2 : 1);
            add({m_tree.text()[at], at, to, false, section, section});
            at = to;
        }
    }

    void addSection(Tree::Id id) {
        const Node& node = m_tree[id];
        const auto size = static_cast<std::uint32_t>(insideCData(m_tree.source(id)).size());
        if (size == 0) {
            addUnseen(node.begin, node.end, false);
        }
        const std::uint32_t begin = std::min(node.begin + cdataBegin, node.end);
        addText(begin, begin + size, id);
    }

    /// Characters that are written as one.
    void addWhole(const Node& node, std::u16string_view characters) {
        if (characters.empty()) {
            addUnseen(node.begin, node.end, false);
        }
        for (std::size_t i = 0; i < characters.size(); ++i) {
            add({characters[i], node.begin, node.end, i > 0});
        }
    }

    void add(SourceAtom atom) {
        const bool blank = atom.unit < 0x110000 && isBlank(atom.unit);
        if (blank && m_place.noBlanks && atom.section == 0) {
            addUnseen(atom.begin, atom.end, true);
            return;
        }
        if (blank && !m_place.exact) {
            const bool more =
                !m_gap.atoms.empty() && m_gap.atoms.back().unit == u' ' &&
                (m_gap.unseen.empty() || m_gap.unseen.back().before < m_gap.atoms.size());
            if (more) {
                m_gap.atoms.back().end = atom.end;
                m_gap.atoms.back().endSection = atom.section;
                return;
            }
            atom.unit = u' ';
        } else if (atom.unit == u'\r') {
            atom.unit = u'\n';
        }
        m_gap.atoms.push_back(atom);
    }

    void addUnseen(std::uint32_t begin, std::uint32_t end, bool isBlank) {
        if (isBlank && !m_gap.unseen.empty() && m_gap.unseen.back().isBlank &&
            m_gap.unseen.back().end == begin) {
            m_gap.unseen.back().end = end;
            return;
        }
        m_gap.unseen.push_back(
            {.before = m_gap.atoms.size(), .begin = begin, .end = end, .isBlank = isBlank});
    }

    /// What stood between elements that were removed goes with them.
    void noteRemoved() {
        if (m_removed == none) {
            m_removed = m_gap.atoms.size();
            m_unseenAhead = m_gap.unseen.size();
            m_gap.atoms.push_back({removedAtom});
            return;
        }
        m_gap.atoms.resize(m_removed + 1);
        m_gap.unseen.resize(m_unseenAhead);
    }

    /// Where something was removed, the blanks before it go and those after it stay.
    void dropDoubledBlanks() {
        if (m_removed == none) {
            return;
        }
        if (m_unseenAhead > 0 && m_gap.unseen[m_unseenAhead - 1].isBlank &&
            m_gap.unseen.back().isBlank && m_gap.unseen.size() > m_unseenAhead) {
            m_gap.unseen.erase(m_gap.unseen.begin() +
                               static_cast<std::ptrdiff_t>(m_unseenAhead - 1));
        }
    }

    /// Blanks that don't count are unseen.
    void trimEdges() {
        const std::vector<bool> hidden = m_place.exact ? leadingLineEnds() : blanksAtEdges();
        std::vector<Unseen> unseen;
        std::size_t kept = 0;
        std::size_t next = 0;
        for (std::size_t i = 0; i <= hidden.size(); ++i) {
            for (; next < m_gap.unseen.size() && m_gap.unseen[next].before <= i; ++next) {
                unseen.push_back(m_gap.unseen[next]);
                unseen.back().before = kept;
            }
            if (i == hidden.size()) {
                break;
            }
            if (hidden[i]) {
                const SourceAtom& atom = m_gap.atoms[i];
                unseen.push_back({.before = kept,
                                  .begin = atom.begin,
                                  .end = atom.end,
                                  .isBlank = true,
                                  .section = atom.section,
                                  .endSection = atom.endSection});
            } else {
                m_gap.atoms[kept++] = m_gap.atoms[i];
            }
        }
        m_gap.atoms.resize(kept);
        m_gap.unseen = std::move(unseen);
    }

    bool isGlued(std::size_t i) const {
        return m_gap.atoms[i].glued || (i + 1 < m_gap.atoms.size() && m_gap.atoms[i + 1].glued);
    }

    /// HTML has no line end right after the tag.
    std::vector<bool> leadingLineEnds() const {
        std::vector<bool> hidden(m_gap.atoms.size());
        for (std::size_t i = 0;
             m_place.edgeBefore && i < hidden.size() && m_gap.atoms[i].unit == u'\n' && !isGlued(i);
             ++i) {
            hidden[i] = true;
        }
        return hidden;
    }

    std::vector<bool> blanksAtEdges() const {
        std::vector<bool> hidden(m_gap.atoms.size());
        bool edge = m_place.edgeAfter;
        for (std::size_t i = hidden.size(); i-- > 0;) {
            const char32_t unit = m_gap.atoms[i].unit;
            if (unit == u' ') {
                hidden[i] = edge && !isGlued(i);
            } else {
                edge = unit == breakAtom;
            }
        }
        edge = m_place.edgeBefore;
        for (std::size_t i = 0; i < hidden.size(); ++i) {
            const char32_t unit = m_gap.atoms[i].unit;
            hidden[i] = hidden[i] || (unit == u' ' && edge && !isGlued(i));
            edge = unit == breakAtom || unit == u' ';
        }
        return hidden;
    }

    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    const Tree& m_tree;
    const GapPlace& m_place;
    Gap& m_gap;
    std::size_t m_removed = none;
    std::size_t m_unseenAhead = 0;
};

} // namespace

void readGap(const Tree& tree, const Outline& outline, Tree::Id first, Tree::Id behind,
             const GapPlace& place, Gap& gap) {
    gap.clear();
    GapReader(tree, place, gap).read(outline, first, behind);
}

} // namespace ravikit
