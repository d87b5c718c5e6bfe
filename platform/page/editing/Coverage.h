#pragma once

#include "platform/page/dom/Dom.h"
#include "platform/page/editing/InlineStyle.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tessaly::page {

/// True for a text that a formatting command acts on: one in the flow of the page, and not the
/// white space between blocks or parts of a table.
bool takesFormat(const Node& text);

/// True for a text of white space alone.
bool isBlank(const Node& text);

/// Cuts the texts at the ends of `span`, and returns the texts in it that take a format, in
/// document order.
std::vector<Node*> isolateTexts(Dom& dom, const Span& span);

/// What stands inside the nodes of a subtree.
class Coverage {
public:
    struct Cover {
        bool chosen = false; ///< a chosen text
        bool other = false;  ///< a text that takes a format and is not chosen
        bool block = false;  ///< a block
        bool styled = false; ///< an element that gives the style a value, or is one
    };

    Coverage(Node& scope, InlineStyle style, const std::unordered_set<const Node*>& chosen);

    /// All false for a node made since.
    Cover of(const Node& node) const;

private:
    std::unordered_map<const Node*, Cover> m_covers;
};

/// The texts among `texts`, all inside `scope`, for which the elements around them give another
/// value than `wanted`.
std::unordered_set<const Node*> textsUnlike(int wanted, InlineStyle style, const Node& scope,
                                            const std::vector<Node*>& texts);

} // namespace tessaly::page
