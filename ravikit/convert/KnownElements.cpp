#include "ravikit/convert/KnownElements.h"

#include "ravikit/convert/page/Carrier.h"
#include "ravikit/convert/page/Digest.h"
#include "ravikit/convert/page/Hash.h"
#include "ravikit/convert/page/PageShapes.h"
#include "ravikit/html/Style.h"

#include <algorithm>
#include <map>
#include <utility>

namespace ravikit {

namespace {

/// Browsers write `b` again for a `strong`, which looks the same.
bool isSameFormat(Element page, Element source) {
    return page == source || (page == Element::B && source == Element::Strong) ||
           (page == Element::I && source == Element::Em);
}

} // namespace

Element formatOf(PageTag tag) {
    switch (tag) {
    case PageTag::B:
        return Element::B;
    case PageTag::I:
        return Element::I;
    case PageTag::U:
        return Element::U;
    case PageTag::Em:
        return Element::Em;
    case PageTag::Strong:
        return Element::Strong;
    case PageTag::Big:
        return Element::Big;
    case PageTag::Small:
        return Element::Small;
    default:
        return Element::Unknown;
    }
}

std::uint32_t pageEffects(const PageTree& page, std::uint32_t node) {
    std::uint32_t effects = 0;
    const PageNode& element = page[node];
    if (const auto* const style = page.attribute(node, u"style")) {
        effects = styleEffects(style->value);
    }
    if (isBlockTag(element.tag) && (effects & AlignBits) == 0) {
        effects |= alignCode(page.value(node, u"align"));
    }
    if (element.tag == PageTag::Center && (effects & AlignBits) == 0) {
        effects |= alignCode(u"center");
    }
    if (element.tag == PageTag::Font) {
        effects |= fontSizeEffect(page.value(node, u"size"));
    }
    return effects;
}

KnownElements::KnownElements(const PageTree& page, const Declarations* known)
    : m_page(page) {
    findCarrier();
    if (m_root == none) {
        return;
    }
    readMarks();
    if (!isUnchanged()) {
        matchSource(known);
    }
}

/// The outermost element that carries a source which its own mark confirms.
void KnownElements::findCarrier() {
    for (std::uint32_t node = 0; node < m_page.size(); ++node) {
        if (m_page[node].tag == PageTag::None) {
            continue;
        }
        const auto* const carrier = m_page.attribute(node, deckAttribute);
        const auto mark = carrier ? readMark(m_page.value(node, markAttribute)) : std::nullopt;
        auto source = mark ? carriedSource(carrier->value) : std::nullopt;
        if (source && Mark::deckOf(hashOf(*source)) == mark->deck) {
            m_root = node;
            m_deck = mark->deck;
            m_source = *std::move(source);
            return;
        }
    }
}

/// Digests the page and compares each mark with what stands there.
void KnownElements::readMarks() {
    struct Open {
        std::uint32_t next;
        std::uint32_t known;
        std::uint64_t digest;
    };
    std::vector<Open> open;
    Digest digest;
    m_byNode.assign(m_page.size(), none);
    std::uint32_t parent = none;
    const auto closeUpTo = [&](std::uint32_t node) {
        while (!open.empty() && open.back().next <= node) {
            const std::uint64_t found = Mark::digestOf(digest.close());
            if (open.back().known != none) {
                KnownElement& element = m_elements[open.back().known];
                element.isUnchanged = found == open.back().digest;
                parent = element.parent == open.back().known ? none : element.parent;
            }
            open.pop_back();
        }
    };
    for (std::uint32_t node = 0; node < m_page.size(); ++node) {
        closeUpTo(node);
        const PageNode& one = m_page[node];
        if (one.tag == PageTag::None) {
            digest.text(one.text);
            continue;
        }
        digest.open(one.tag, one.attributes == 0 ? 0 : pageEffects(m_page, node));
        digest.text(shownOnPage(m_page, node));
        open.push_back({one.next, none, 0});
        const auto mark = readMark(m_page.value(node, markAttribute));
        if (mark && mark->deck == m_deck) {
            const auto number = static_cast<std::uint32_t>(m_elements.size());
            m_elements.push_back({.page = node, .parent = parent == none ? number : parent});
            m_begins.push_back(mark->begin);
            m_byNode[node] = parent = open.back().known = number;
            open.back().digest = mark->digest;
        }
    }
    closeUpTo(m_page.size());
}

bool KnownElements::isUnchanged() const {
    const KnownElement* const root = m_root == none ? nullptr : find(m_root);
    return root != nullptr && root->isUnchanged && !hasTextOutside();
}

/// Whether the page has more than the deck and what a browser has around any page.
bool KnownElements::hasTextOutside() const {
    for (std::uint32_t node = 0; node < m_page.size(); ++node) {
        if (node == m_root) {
            node = m_page[node].next - 1;
            continue;
        }
        const PageNode& one = m_page[node];
        const bool isAround = one.tag == PageTag::Body || one.tag == PageTag::Html ||
                              one.tag == PageTag::Div || one.tag == PageTag::Dropped;
        if (one.tag == PageTag::None ? !trimmed(one.text).empty() : !isAround) {
            return true;
        }
    }
    return false;
}

void KnownElements::matchSource(const Declarations* known) {
    m_tree = parseInPlace(m_source, known);
    if (m_tree->documentElement() == Tree::none) {
        m_tree.reset();
        return;
    }
    m_outline.emplace(*m_tree);
    findParents();
    Tree::Id near = m_tree->documentElement();
    for (std::size_t i = 0; i < m_elements.size(); ++i) {
        const Tree::Id id = elementAt(m_begins[i], near);
        near = id == Tree::none ? near : id;
        if (id != Tree::none && isTurned(m_elements[i].page, id)) {
            moveToRest(i, m_outline->element(id));
        }
        const std::uint32_t node = m_elements[i].page;
        const bool isAroundDeck = node < m_root && m_root < m_page[node].next;
        if (id == Tree::none || isAroundDeck || !m_outline->isShown(id) || isTurned(node, id)) {
            m_byNode[m_elements[i].page] = none;
        } else {
            m_elements[i].source = id;
        }
    }
    dissolveWrappers();
    dissolveEmptied();
    choose();
    m_joins = ParagraphJoins(m_page, *m_tree, *m_outline, m_elements, m_parents);
    chooseAnchors();
}

/// Whether a format was taken off: what is left of its element, mark and all, is another one.
bool KnownElements::isTurned(std::uint32_t pageNode, Tree::Id source) const {
    const Element element = m_outline->element(source);
    return isFormat(element) && !m_outline->isFlat(source) &&
           !isSameFormat(formatOf(m_page[pageNode].tag), element);
}

/// Of an element that lost its format in part a browser leaves a `span` with the mark, and in it
/// new elements around what keeps the format: the first of them is what the mark means.
void KnownElements::moveToRest(std::size_t number, Element format) {
    KnownElement& known = m_elements[number];
    const std::uint32_t old = known.page;
    for (std::uint32_t child = old + 1; child < m_page[old].next; child = m_page[child].next) {
        if (m_byNode[child] != none || !isSameFormat(formatOf(m_page[child].tag), format)) {
            continue;
        }
        m_byNode[child] = std::exchange(m_byNode[old], none);
        known.page = child;
        for (std::size_t i = number + 1;
             i < m_elements.size() && m_elements[i].page < m_page[old].next; ++i) {
            const std::uint32_t node = m_elements[i].page;
            const bool isInside = child < node && node < m_page[child].next;
            if (m_elements[i].parent == number && !isInside) {
                m_elements[i].parent = known.parent;
            }
        }
        return;
    }
}

/// The element of the source that begins there, or none. The search starts `from` a node, since the
/// marks of a page mostly come in the order of the source, each near the one before.
Tree::Id KnownElements::elementAt(std::uint32_t begin, Tree::Id from) const {
    const Tree& tree = *m_tree;
    Tree::Id low = tree.documentElement();
    Tree::Id high = tree[low].next;
    if (tree[from].begin <= begin) {
        low = from;
        for (Tree::Id step = 1; step < high - low; step *= 2) {
            if (tree[low + step].begin > begin) {
                high = low + step;
                break;
            }
            low += step;
        }
    }
    while (low < high) {
        const Tree::Id middle = low + (high - low) / 2;
        if (tree[middle].begin < begin) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    const bool isHere =
        low < tree.size() && tree[low].begin == begin && tree.kind(low) == NodeKind::Element;
    return isHere ? low : Tree::none;
}

void KnownElements::findParents() {
    m_parents.assign(m_tree->size(), Tree::none);
    std::vector<Tree::Id> open;
    for (Tree::Id id = m_tree->documentElement(); id < m_tree->size(); ++id) {
        while (!open.empty() && (*m_tree)[open.back()].next <= id) {
            open.pop_back();
        }
        m_parents[id] = open.empty() ? Tree::none : open.back();
        if (m_tree->kind(id) == NodeKind::Element) {
            open.push_back(id);
        }
    }
}

bool KnownElements::holdsBlocksOnly(std::uint32_t pageNode) const {
    for (std::uint32_t at = pageNode + 1; at < m_page[pageNode].next; at = m_page[at].next) {
        const bool isRoom = m_page.attribute(at, roomAttribute) != nullptr;
        const bool isBlank = m_page[at].tag == PageTag::None && trimmed(m_page[at].text).empty();
        if (!isRoom && !isBlank && (!isBlockTag(m_page[at].tag) || m_page[at].tag == PageTag::Br)) {
            return false;
        }
    }
    return true;
}

/// A block in which the same block stands, whole or changed, was pasted into.
void KnownElements::dissolveWrappers() {
    for (std::uint32_t i = 0; i < m_elements.size(); ++i) {
        const Tree::Id source = m_elements[i].source;
        const Element kind = source == Tree::none ? Element::Unknown : m_outline->element(source);
        if (kind != Element::Card && kind != Element::P && kind != Element::Pre) {
            continue;
        }
        std::uint32_t above = i;
        do {
            above = m_elements[above].parent;
        } while (m_elements[above].parent != above && m_elements[above].source != source);
        KnownElement& outer = m_elements[above];
        if (above != i && outer.source == source && outer.page != m_root &&
            holdsBlocksOnly(outer.page)) {
            outer.source = Tree::none;
            m_byNode[outer.page] = none;
            m_wrappers.push_back(outer.page);
            for (std::uint32_t in = above + 1;
                 in < m_elements.size() && m_elements[in].page < m_page[outer.page].next; ++in) {
                m_elements[in].parent =
                    m_elements[in].parent == above ? outer.parent : m_elements[in].parent;
            }
        }
    }
    std::sort(m_wrappers.begin(), m_wrappers.end());
}

/// Where a link was split, its piece on a line without text is none.
void KnownElements::dissolveEmptied() {
    std::map<Tree::Id, bool> isFilled; // of the links, whether one of their pieces is
    std::vector<KnownElement*> emptied;
    for (KnownElement& element : m_elements) {
        if (element.source != Tree::none && isLink(m_outline->element(element.source))) {
            const bool isEmptied = isEmptyLine(element.page);
            isFilled[element.source] |= !isEmptied;
            if (isEmptied) {
                emptied.push_back(&element);
            }
        }
    }
    for (KnownElement* const element : emptied) {
        if (isFilled[element->source]) {
            element->source = Tree::none;
            m_byNode[element->page] = none;
        }
    }
}

/// Whether nothing stands in `pageNode` but what keeps a caret there.
bool KnownElements::isEmptyLine(std::uint32_t pageNode) const {
    const std::uint32_t end = m_page[pageNode].next;
    const std::uint32_t first = pageNode + 1;
    return first == end || (m_page[first].tag == PageTag::Br && m_page[first].next == end);
}

/// Of those that name the same element of the source one is it and the others are copies. What is
/// unchanged is written as a whole, with all that is in it, so that of two such the outer one in
/// the source goes first, then the first on the page; after them all comes what has changed.
void KnownElements::choose() {
    std::vector<std::uint32_t> whole(m_elements.size(),
                                     none); // the outermost unchanged around each
    std::vector<std::uint32_t> wholes;
    for (std::uint32_t i = 0; i < m_elements.size(); ++i) {
        const KnownElement& element = m_elements[i];
        whole[i] = element.parent == i ? none : whole[element.parent];
        if (whole[i] == none && element.isUnchanged && element.source != Tree::none) {
            whole[i] = i;
            wholes.push_back(i);
        }
    }
    std::stable_sort(wholes.begin(), wholes.end(), [this](std::uint32_t a, std::uint32_t b) {
        return m_elements[a].source < m_elements[b].source;
    });
    std::vector<bool> isTaken(m_tree->size());
    for (const std::uint32_t i : wholes) {
        KnownElement& element = m_elements[i];
        element.isCopy = isTaken[element.source];
        for (Tree::Id id = element.source; !element.isCopy && id < (*m_tree)[element.source].next;
             ++id) {
            isTaken[id] = true;
        }
    }
    chooseInside(whole);
    for (std::uint32_t i = 0; i < m_elements.size(); ++i) {
        KnownElement& element = m_elements[i];
        if (element.source != Tree::none && whole[i] == none) {
            element.isCopy = isTaken[element.source];
            isTaken[element.source] = true;
        }
    }
}

/// Chooses among the elements inside of `whole`, the unchanged one around each, for where that one
/// cannot be written as a whole: it may still hold an element twice, or one from elsewhere that
/// looks the same.
void KnownElements::chooseInside(const std::vector<std::uint32_t>& whole) {
    std::vector<bool> isTaken(m_tree->size());
    for (std::uint32_t i = 0; i < m_elements.size(); ++i) {
        KnownElement& element = m_elements[i];
        if (element.source == Tree::none || whole[i] == none || whole[i] == i) {
            continue;
        }
        const KnownElement& outer = m_elements[whole[i]];
        const bool isInside =
            element.source > outer.source && element.source < (*m_tree)[outer.source].next;
        element.isCopy = outer.isCopy || !isInside || isTaken[element.source];
        isTaken[element.source] = true;
    }
}

/// Of the elements that still stand in their parent the most that are in the order of the source.
void KnownElements::chooseAnchors() {
    // The children that stand in their parent as lists, each in the order of the page.
    std::vector<std::uint32_t> first(m_elements.size(), none);
    std::vector<std::uint32_t> next(m_elements.size(), none);
    for (auto i = static_cast<std::uint32_t>(m_elements.size()); i-- > 0;) {
        const KnownElement& element = m_elements[i];
        if (element.source != Tree::none && !element.isCopy && element.parent != i &&
            m_elements[element.parent].source != Tree::none &&
            m_elements[element.parent].source == m_parents[element.source]) {
            next[i] = std::exchange(first[element.parent], i);
        }
    }
    std::vector<std::uint32_t> ends; // the last of the best chain of each length
    std::vector<std::uint32_t> ahead(m_elements.size(), none);
    for (std::uint32_t parent = 0; parent < m_elements.size(); ++parent) {
        ends.clear();
        for (std::uint32_t child = first[parent]; child != none; child = next[child]) {
            const auto at = std::lower_bound(ends.begin(), ends.end(), child,
                                             [this](std::uint32_t a, std::uint32_t b) {
                                                 return m_elements[a].source < m_elements[b].source;
                                             });
            ahead[child] = at == ends.begin() ? none : *(at - 1);
            if (at == ends.end()) {
                ends.push_back(child);
            } else {
                *at = child;
            }
        }
        for (std::uint32_t i = ends.empty() ? none : ends.back(); i != none; i = ahead[i]) {
            m_elements[i].isAnchor = true;
        }
        m_elements[parent].firstAnchor = static_cast<std::uint32_t>(m_anchors.size());
        for (std::uint32_t child = first[parent]; child != none; child = next[child]) {
            if (m_elements[child].isAnchor) {
                m_anchors.push_back(m_elements[child].source);
            }
        }
        m_elements[parent].behindAnchors = static_cast<std::uint32_t>(m_anchors.size());
    }
}

} // namespace ravikit
