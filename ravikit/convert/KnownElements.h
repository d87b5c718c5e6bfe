#pragma once

#include "ravikit/convert/Elements.h"
#include "ravikit/convert/KnownElement.h"
#include "ravikit/convert/ParagraphJoins.h"
#include "ravikit/html/PageTree.h"
#include "ravikit/xml/Parser.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ravikit {

/// The format that `tag` is on a page; Unknown if it is none.
Element formatOf(PageTag tag);

/// The effects of all attributes of an element of the page: of `align`, `style`, `size`.
std::uint32_t pageEffects(const PageTree& page, std::uint32_t node);

/// What a page still knows of the deck that it was made from.
class KnownElements {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    KnownElements(const PageTree& page, const Declarations* known);

    /// Whether the page shows the deck that it was made from, untouched, and nothing else.
    bool isUnchanged() const;
    /// The deck's source, for which this object is then of no more use.
    std::u16string takeSource() { return std::move(m_source); }

    /// The source's tree; null if the page carries no deck.
    const Tree* tree() const { return m_tree.get(); }
    const Outline& outline() const { return *m_outline; }

    const KnownElement* find(std::uint32_t pageNode) const {
        const std::uint32_t number = m_byNode.empty() ? none : m_byNode[pageNode];
        return number == none ? nullptr : &m_elements[number];
    }
    /// Whether `pageNode` is a block that a browser pasted its own copy, or itself, into: no more
    /// than what is in it.
    bool isWrapper(std::uint32_t pageNode) const {
        return std::binary_search(m_wrappers.begin(), m_wrappers.end(), pageNode);
    }
    const std::vector<KnownElement>& elements() const { return m_elements; }
    std::uint32_t rootNode() const { return m_root; }
    const ParagraphJoins& joins() const { return m_joins; }
    Tree::Id anchor(std::uint32_t index) const { return m_anchors[index]; }
    Tree::Id parentOf(Tree::Id source) const { return m_parents[source]; }

private:
    void findCarrier();
    void readMarks();
    void matchSource(const Declarations* known);
    void findParents();
    bool holdsBlocksOnly(std::uint32_t pageNode) const;
    void dissolveWrappers();
    void dissolveEmptied();
    bool isEmptyLine(std::uint32_t pageNode) const;
    void choose();
    void chooseInside(const std::vector<std::uint32_t>& whole);
    void chooseAnchors();
    bool hasTextOutside() const;
    Tree::Id elementAt(std::uint32_t begin, Tree::Id from) const;
    void moveToRest(std::size_t number, Element format);
    bool isTurned(std::uint32_t pageNode, Tree::Id source) const;

    const PageTree& m_page;
    std::uint32_t m_root = none;
    std::u16string m_source;
    std::uint64_t m_deck = 0;
    std::shared_ptr<const Tree> m_tree;
    std::optional<Outline> m_outline;
    std::vector<std::uint32_t> m_begins; ///< of each known element, in the source
    std::vector<KnownElement> m_elements;
    std::vector<std::uint32_t> m_byNode;
    std::vector<std::uint32_t> m_wrappers; ///< nodes of the page, in order
    ParagraphJoins m_joins;
    std::vector<Tree::Id> m_parents;
    std::vector<Tree::Id> m_anchors;
};

} // namespace ravikit
