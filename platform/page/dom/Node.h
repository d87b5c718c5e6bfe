#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tessaly::page {

enum class NodeKind : std::uint8_t { Element, Text, Comment };

struct Attribute {
    std::u16string name;
    std::u16string value;

    bool operator==(const Attribute&) const = default;
};

/// A node of a page. The Dom owns it; the pointers say where it stands in the tree and are null
/// where there is nothing.
struct Node {
    NodeKind kind = NodeKind::Text;
    /// An element of SVG or MathML, whose name keeps its case.
    bool foreign = false;
    /// Marks a node that a collection has reached.
    bool reached = false;
    /// How many objects outside the Dom refer to this node.
    std::uint32_t pins = 0;
    /// Different for every node that the page ever had.
    std::uint64_t id = 0;

    /// An element's name, otherwise the characters.
    std::u16string text;
    std::vector<Attribute> attributes;

    Node* parent = nullptr;
    Node* first = nullptr;
    Node* last = nullptr;
    Node* previous = nullptr;
    Node* next = nullptr;

    bool isElement() const { return kind == NodeKind::Element; }
    bool isText() const { return kind == NodeKind::Text; }
    /// True for an HTML element of this name, given in small letters.
    bool is(std::u16string_view name) const { return isElement() && !foreign && text == name; }
};

/// The value of the attribute of this name, exact in case; null without one.
const std::u16string* findAttribute(const Node& element, std::u16string_view name);
void writeAttribute(Node& element, std::u16string_view name, std::u16string_view value);
void dropAttribute(Node& element, std::u16string_view name);

/// The node after `node` in document order, inside `root` alone; null at the end.
Node* following(const Node& node, const Node* root = nullptr);

/// The same, leaving out what stands inside `node`.
Node* followingOutside(const Node& node, const Node* root = nullptr);

/// True for `root` itself and for all that stands inside it.
bool isInside(const Node& node, const Node& root);

/// The innermost node that holds both, which may be one of them; null if they are in two trees.
Node* commonAncestor(Node& a, Node& b);

/// The first element called `name` (in small letters) directly inside `parent`; null without one.
Node* findChild(const Node& parent, std::u16string_view name);

} // namespace tessaly::page
