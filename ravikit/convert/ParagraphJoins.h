#pragma once

#include "ravikit/convert/Elements.h"
#include "ravikit/convert/KnownElement.h"
#include "ravikit/html/PageTree.h"

#include <map>
#include <vector>

namespace ravikit {

/// The paragraphs of the source that an author joined on the page. A browser then leaves no element
/// of the second one, or moves its first line alone to the one before and keeps the rest.
class ParagraphJoins {
public:
    ParagraphJoins() = default;
    /// `parents` has the parent of each node of `tree`; what was joined gets its new one there.
    ParagraphJoins(const PageTree& page, const Tree& tree, const Outline& outline,
                   const std::vector<KnownElement>& elements, std::vector<Tree::Id>& parents);

    /// The paragraphs directly after `paragraph` in the source that stand in it on the page, whole
    /// or up to `headEnd`, in order.
    std::vector<Tree::Id> joinedTo(Tree::Id paragraph) const;
    /// Up to which node of `paragraph` its content stands in the one before it; its first one if
    /// all of it is its own.
    Tree::Id contentBegin(Tree::Id paragraph, const Tree& tree) const;
    /// The node after what of a joined `paragraph` stands in the one before it.
    Tree::Id headEnd(Tree::Id paragraph, const Tree& tree) const;

private:
    void move(Tree::Id paragraph, Tree::Id to, Tree::Id end, const Tree& tree,
              std::vector<Tree::Id>& parents);

    std::map<Tree::Id, std::vector<Tree::Id>> m_joined;
    std::map<Tree::Id, Tree::Id> m_breaks; ///< of those that came in part, the break after that
};

} // namespace ravikit
