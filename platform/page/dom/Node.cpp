#include "platform/page/dom/Node.h"

#include <algorithm>

namespace tessaly::page {

namespace {

std::size_t depthOf(const Node& node) {
    std::size_t depth = 0;
    for (const Node* at = node.parent; at != nullptr; at = at->parent) {
        ++depth;
    }
    return depth;
}

} // namespace

const std::u16string* findAttribute(const Node& element, std::u16string_view name) {
    const auto found = std::find_if(element.attributes.begin(), element.attributes.end(),
                                    [name](const Attribute& each) { return each.name == name; });
    return found == element.attributes.end() ? nullptr : &found->value;
}

void writeAttribute(Node& element, std::u16string_view name, std::u16string_view value) {
    for (Attribute& each : element.attributes) {
        if (each.name == name) {
            each.value = value;
            return;
        }
    }
    element.attributes.push_back({std::u16string(name), std::u16string(value)});
}

void dropAttribute(Node& element, std::u16string_view name) {
    std::erase_if(element.attributes, [name](const Attribute& each) { return each.name == name; });
}

Node* following(const Node& node, const Node* root) {
    return node.first != nullptr ? node.first : followingOutside(node, root);
}

Node* followingOutside(const Node& node, const Node* root) {
    for (const Node* at = &node; at != nullptr && at != root; at = at->parent) {
        if (at->next != nullptr) {
            return at->next;
        }
    }
    return nullptr;
}

bool isInside(const Node& node, const Node& root) {
    const Node* at = &node;
    while (at != nullptr && at != &root) {
        at = at->parent;
    }
    return at != nullptr;
}

Node* commonAncestor(Node& a, Node& b) {
    Node* left = &a;
    Node* right = &b;
    std::size_t leftDepth = depthOf(a);
    std::size_t rightDepth = depthOf(b);
    for (; leftDepth > rightDepth; --leftDepth) {
        left = left->parent;
    }
    for (; rightDepth > leftDepth; --rightDepth) {
        right = right->parent;
    }
    while (left != right) {
        left = left->parent;
        right = right->parent;
    }
    return left;
}

Node* findChild(const Node& parent, std::u16string_view name) {
    Node* child = parent.first;
    while (child != nullptr && !child->is(name)) {
        child = child->next;
    }
    return child;
}

} // namespace tessaly::page
