#pragma once

#include "platform/page/dom/Node.h"

#include <cstddef>

namespace tessaly::page {

/// A point in a page. It is given by the node beside it and not by a number of children, so that
/// it stays right while nodes come, go and move elsewhere, and costs nothing to keep.
struct Place {
    enum class Kind : std::uint8_t {
        InText,  ///< inside the text `node`, after `offset` units of it
        Before,  ///< in front of `node`
        AtEndOf, ///< after the last child of the element `node`
    };

    Kind kind = Kind::AtEndOf;
    Node* node = nullptr;
    std::size_t offset = 0;

    static Place inText(Node& text, std::size_t offset) { return {Kind::InText, &text, offset}; }
    static Place before(Node& node) { return {Kind::Before, &node, 0}; }
    static Place atEndOf(Node& element) { return {Kind::AtEndOf, &element, 0}; }
    static Place atStartOf(Node& element);
    static Place behind(Node& node);

    /// The element that the place stands in.
    Node& element() const { return kind == Kind::AtEndOf ? *node : *node->parent; }

    bool operator==(const Place&) const = default;
};

/// Two places, the first not after the second.
struct Span {
    Place start;
    Place end;

    bool operator==(const Span&) const = default;
};

/// The first node in document order that begins at `place` or after it; null at the page's end.
Node* nodeFrom(const Place& place);

/// True if `a` stands in front of `b`, or both are the same place.
bool isInOrder(const Place& a, const Place& b);

/// True if the span holds no character and nothing that shows by itself, such as a picture.
bool isEmpty(const Span& span);

/// The innermost element that holds the whole span.
Node& holderOf(const Span& span);

} // namespace tessaly::page
