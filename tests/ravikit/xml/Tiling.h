#pragma once

#include "ravikit/xml/Tree.h"

#include <string>

/// What a lossless tree promises: its ranges, copied back in order, are the text.
namespace tiling {

using ravikit::Node;
using ravikit::NodeKind;
using ravikit::Tree;

/// Checks one tree. `fault` says what is wrong with it, and stays empty if nothing is.
class Check {
public:
    explicit Check(const Tree& tree)
        : m_tree(tree) {
        if (tree.size() == 0 || tree[0].begin != 0 || tree[0].end != tree.text().size() ||
            tree[0].next != tree.size()) {
            fail(0, "the document is not the whole");
            return;
        }
        children(0, 1, 0, tree[0].end);
        for (Tree::Id id = 1; id < tree.size() && fault.empty(); ++id) {
            node(id);
        }
    }

    std::string fault;

private:
    void fail(Tree::Id id, const char* what) { fault = "node " + std::to_string(id) + ": " + what; }

    // The nodes from `first` to the end of `parent` stand one against the other in [begin, end).
    void children(Tree::Id parent, Tree::Id first, std::uint32_t begin, std::uint32_t end) {
        std::uint32_t at = begin;
        for (Tree::Id id = first; id < m_tree[parent].next && fault.empty(); id = m_tree[id].next) {
            if (m_tree.kind(id) == NodeKind::Attribute || m_tree[id].begin != at ||
                m_tree[id].next <= id || m_tree[id].next > m_tree[parent].next) {
                fail(id, "does not follow on the one ahead");
            }
            at = m_tree[id].end;
        }
        if (fault.empty() && at != end) {
            fail(parent, "has content that no child holds");
        }
    }

    void node(Tree::Id id) {
        const Node& node = m_tree[id];
        const std::u16string_view source = m_tree.source(id);
        if (node.begin >= node.end || node.end > m_tree.text().size()) {
            return fail(id, "is empty");
        }
        if (m_tree.wellFormed() &&
            (m_tree.kind(id) == NodeKind::Junk || m_tree.has(id, ravikit::Recovered))) {
            fail(id, "was mended, but nothing was wrong");
        }
        switch (m_tree.kind(id)) {
        case NodeKind::Element:
            return element(id, source);
        case NodeKind::Attribute:
            return inside(id, id + 1,
                          node.begin + static_cast<std::uint32_t>(m_tree.name(id).size()), node.end,
                          NodeKind::Reference);
        default:
            if (node.next != id + 1) {
                fail(id, "has children");
            }
        }
    }

    void element(Tree::Id id, std::u16string_view source) {
        const std::u16string name(m_tree.name(id));
        const std::uint32_t startEnd = m_tree.startTagEnd(id);
        const std::uint32_t endBegin = m_tree.endTagBegin(id);
        if (source.substr(0, name.size() + 1) != u"<" + name) {
            return fail(id, "does not begin with its tag");
        }
        if (startEnd > endBegin || endBegin > m_tree[id].end) {
            return fail(id, "has tags that lie over each other");
        }
        if (endBegin < m_tree[id].end && m_tree.text().substr(endBegin, 2) != u"</") {
            return fail(id, "does not end with its end tag");
        }
        const Tree::Id content = m_tree.firstContent(id);
        inside(id, id + 1, m_tree[id].begin + 1 + static_cast<std::uint32_t>(name.size()), startEnd,
               NodeKind::Attribute, content);
        children(id, content, startEnd, endBegin);
    }

    // The nodes from `first` on are of one kind and stand apart in [begin, end).
    void inside(Tree::Id parent, Tree::Id first, std::uint32_t begin, std::uint32_t end,
                NodeKind kind, Tree::Id behind = Tree::none) {
        behind = behind == Tree::none ? m_tree[parent].next : behind;
        for (Tree::Id id = first; id < behind; id = m_tree[id].next) {
            if (m_tree.kind(id) != kind || m_tree[id].begin < begin || m_tree[id].end > end ||
                m_tree[id].next <= id) {
                return fail(id, "stands outside of what holds it");
            }
            begin = m_tree[id].end;
        }
    }

    const Tree& m_tree;
};

inline std::string faultOf(const Tree& tree) {
    return Check(tree).fault;
}

} // namespace tiling
