#pragma once

#include "platform/page/dom/Place.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace tessaly::page {

/// The tree of one page, the selection in it, and every place in it that someone keeps. Each
/// change goes through here, so that no place is left pointing at what has gone.
///
/// All nodes lie in one list, whatever tree they are in, and `collect` frees those that neither
/// the page nor a pin reaches: no depth of nesting can overflow the stack, and an element that a
/// host still holds lives on with all around it when it has been removed from the page.
class Dom {
public:
    Dom();
    Dom(const Dom&) = delete;
    Dom& operator=(const Dom&) = delete;
    Dom(Dom&&) = delete;
    Dom& operator=(Dom&&) = delete;
    ~Dom();

    /// The `html` element.
    Node& root() const { return *m_root; }
    /// Puts the tree below `root` in the place of the page's.
    void root(Node& root);
    /// Null in a page without one.
    Node* body() const { return findChild(*m_root, u"body"); }

    /// New nodes, in no tree yet.
    Node& newElement(std::u16string_view name);
    Node& newText(std::u16string_view characters);
    Node& newComment(std::u16string_view characters);

    /// Puts `node`, from wherever it stands, into `parent` in front of `before`, at the end if
    /// that is null. Places in it and in front of it travel along.
    void put(Node& node, Node& parent, Node* before);

    /// Takes `node` out of its tree. Places in it go to where it stood.
    void remove(Node& node);
    void removeChildren(Node& element);

    /// Puts the children of `element` where it stands, and removes it.
    void unwrap(Node& element);

    /// Cuts `text` at `offset` and returns the second part, which takes the places after.
    Node& split(Node& text, std::size_t offset);

    /// A number that changes whenever nodes come, go or move.
    std::uint64_t version() const { return m_version; }

    /// Keeps `span` right through all changes until it is dropped.
    void track(Span& span) { m_spans.push_back(&span); }
    void untrack(Span& span);

    /// The selection: none, a span, or one element as an object.
    enum class Selected : std::uint8_t { Nothing, Span, Object };
    Selected selected() const { return m_selected; }
    const Span& selectedSpan() const { return m_selection; }
    Node* selectedObject() const { return m_object; }
    void select(const Span& span);
    void selectObject(Node& element);
    void selectNothing();

    /// Frees the nodes that nothing reaches, if enough have been made since the last time to be
    /// worth it. Invalidates pointers to nodes that are in no tree and not pinned.
    void collect();

    /// How many nodes there are, in whatever tree.
    std::size_t size() const { return m_nodes.size(); }

private:
    Node& make(NodeKind kind, std::u16string_view text);
    void unlink(Node& node);
    void retreat(const Node& root, bool withRoot, const Place& to);

    std::vector<std::unique_ptr<Node>> m_nodes;
    std::size_t m_afterCollection = 0;
    std::uint64_t m_lastId = 0;
    std::uint64_t m_version = 0;
    Node* m_root = nullptr;
    std::vector<Span*> m_spans;
    Selected m_selected = Selected::Nothing;
    Span m_selection;
    Node* m_object = nullptr;
};

/// A node that someone outside the Dom holds, with the Dom that it lives in.
class Pin {
public:
    Pin(std::shared_ptr<Dom> dom, Node& node)
        : m_dom(std::move(dom))
        , m_node(&node) {
        ++m_node->pins;
    }
    Pin(const Pin&) = delete;
    Pin& operator=(const Pin&) = delete;
    Pin(Pin&&) = delete;
    Pin& operator=(Pin&&) = delete;
    ~Pin() { --m_node->pins; }

    Dom& dom() const { return *m_dom; }
    Node& node() const { return *m_node; }
    const std::shared_ptr<Dom>& sharedDom() const { return m_dom; }

private:
    std::shared_ptr<Dom> m_dom;
    Node* m_node;
};

} // namespace tessaly::page
