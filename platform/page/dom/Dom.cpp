#include "platform/page/dom/Dom.h"

#include <algorithm>

namespace tessaly::page {

namespace {

/// Fewer nodes than this are not worth a collection.
constexpr std::size_t collectionStep = 4096;

void markReached(Node& root) {
    for (Node* at = &root; at != nullptr; at = following(*at, &root)) {
        at->reached = true;
    }
}

} // namespace

Dom::Dom()
    : m_root(&make(NodeKind::Element, u"html")) {
    m_selection = {Place::atEndOf(*m_root), Place::atEndOf(*m_root)};
}

Dom::~Dom() = default;

void Dom::root(Node& root) {
    m_root = &root;
    for (Span* span : m_spans) {
        *span = {Place::atEndOf(root), Place::atEndOf(root)};
    }
    selectNothing();
    ++m_version;
}

Node& Dom::make(NodeKind kind, std::u16string_view text) {
    Node& node = *m_nodes.emplace_back(std::make_unique<Node>());
    node.kind = kind;
    node.text = text;
    node.id = ++m_lastId;
    return node;
}

Node& Dom::newElement(std::u16string_view name) {
    return make(NodeKind::Element, name);
}

Node& Dom::newText(std::u16string_view characters) {
    return make(NodeKind::Text, characters);
}

Node& Dom::newComment(std::u16string_view characters) {
    return make(NodeKind::Comment, characters);
}

void Dom::put(Node& node, Node& parent, Node* before) {
    unlink(node);
    node.parent = &parent;
    node.next = before;
    node.previous = before != nullptr ? before->previous : parent.last;
    (node.previous != nullptr ? node.previous->next : parent.first) = &node;
    (before != nullptr ? before->previous : parent.last) = &node;
}

void Dom::unlink(Node& node) {
    ++m_version;
    if (node.parent == nullptr) {
        return;
    }
    (node.previous != nullptr ? node.previous->next : node.parent->first) = node.next;
    (node.next != nullptr ? node.next->previous : node.parent->last) = node.previous;
    node.parent = node.previous = node.next = nullptr;
}

void Dom::retreat(const Node& root, bool withRoot, const Place& to) {
    const auto goes = [&](const Node& node) {
        if (root.first == nullptr) {
            return withRoot && &node == &root; // no need to climb from a deep place
        }
        return isInside(node, root) && (withRoot || &node != &root);
    };
    if (m_object != nullptr && goes(*m_object)) {
        selectNothing();
    }
    const auto leave = [&](Place& place) {
        if (goes(*place.node)) {
            place = to;
        }
    };
    for (Span* span : m_spans) {
        leave(span->start);
        leave(span->end);
    }
    leave(m_selection.start);
    leave(m_selection.end);
}

void Dom::remove(Node& node) {
    if (node.parent != nullptr) {
        retreat(node, true, Place::behind(node));
        unlink(node);
    }
}

void Dom::removeChildren(Node& element) {
    retreat(element, false, Place::atEndOf(element));
    while (element.first != nullptr) {
        unlink(*element.first);
    }
}

void Dom::unwrap(Node& element) {
    while (element.first != nullptr) {
        put(*element.first, *element.parent, &element);
    }
    remove(element);
}

Node& Dom::split(Node& text, std::size_t offset) {
    Node& rest = newText(std::u16string_view(text.text).substr(offset));
    text.text.erase(offset);
    put(rest, *text.parent, text.next);
    const auto follow = [&](Place& place) {
        if (place.kind == Place::Kind::InText && place.node == &text && place.offset > offset) {
            place = Place::inText(rest, place.offset - offset);
        }
    };
    for (Span* span : m_spans) {
        follow(span->start);
        follow(span->end);
    }
    follow(m_selection.start);
    follow(m_selection.end);
    return rest;
}

void Dom::untrack(Span& span) {
    std::erase(m_spans, &span);
}

void Dom::select(const Span& span) {
    m_selected = Selected::Span;
    m_selection = span;
    m_object = nullptr;
}

void Dom::selectObject(Node& element) {
    m_selected = Selected::Object;
    m_selection = {Place::before(element), Place::behind(element)};
    m_object = &element;
}

void Dom::selectNothing() {
    m_selected = Selected::Nothing;
    Node& at = body() != nullptr ? *body() : *m_root;
    m_selection = {Place::atStartOf(at), Place::atStartOf(at)};
    m_object = nullptr;
}

void Dom::collect() {
    if (m_nodes.size() < 2 * m_afterCollection + collectionStep) {
        return;
    }
    markReached(*m_root);
    for (const std::unique_ptr<Node>& node : m_nodes) {
        if (node->pins > 0 && !node->reached) {
            Node* top = node.get();
            while (top->parent != nullptr) {
                top = top->parent;
            }
            markReached(*top);
        }
    }
    std::erase_if(m_nodes, [](const std::unique_ptr<Node>& node) { return !node->reached; });
    for (const std::unique_ptr<Node>& node : m_nodes) {
        node->reached = false;
    }
    m_afterCollection = m_nodes.size();
    ++m_version;
}

} // namespace tessaly::page
