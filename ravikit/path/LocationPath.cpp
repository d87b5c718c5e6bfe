#include "ravikit/path/LocationPath.h"

#include "ravikit/path/LocationPathReader.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ravikit {

namespace {

/// True for what location paths count as nodes: the declarations before the root are none.
bool isPathNode(NodeKind kind) {
    return kind != NodeKind::XmlDeclaration && kind != NodeKind::Doctype && kind != NodeKind::Junk;
}

bool isAttribute(const Tree& tree, Tree::Id id) {
    return tree.kind(id) == NodeKind::Attribute;
}

bool attributeEquals(const Tree& tree, Tree::Id attribute, std::u16string_view value) {
    return tree.has(attribute, HasReference) ? tree.value(attribute) == value
                                             : tree.rawValue(attribute) == value;
}

} // namespace

/// Takes one set of nodes through the steps of a path.
class LocationPath::Evaluation {
public:
    Evaluation(const Tree& tree, NodeSet start)
        : m_tree(tree)
        , m_set(std::move(start)) {}

    void take(const Step& step) {
        if (step.fromDescendants && step.axis == Step::Axis::Child && step.predicates.empty()) {
            m_set = descendantsCalled(step); // the usual `//name`, without the set between
            return;
        }
        if (step.fromDescendants) {
            m_set = descendantsAndSelf();
        }
        switch (step.axis) {
        case Step::Axis::Self:
            break;
        case Step::Axis::Parent:
            m_set = parents();
            break;
        case Step::Axis::Child:
        case Step::Axis::Attribute:
            m_set = children(step);
            break;
        }
    }

    NodeSet result() && { return std::move(m_set); }

private:
    /// Walks the nodes of a child or attribute axis inside one context node.
    struct Cursor {
        Tree::Id at;
        Tree::Id end;
    };

    /// Calls `visit` with each context node and everything inside it, attributes not counted,
    /// once each and in document order.
    template <class Visit>
    void sweep(Visit&& visit) const {
        Tree::Id done = 0; // all below has been visited
        for (const Tree::Id context : m_set) {
            if (isAttribute(m_tree, context)) {
                visit(context);
                continue;
            }
            const Tree::Id end = m_tree[context].next;
            for (Tree::Id id = std::max(context, done); id < end;) {
                if (isAttribute(m_tree, id)) {
                    id = m_tree[id].next;
                    continue;
                }
                visit(id++);
            }
            done = std::max(done, end);
        }
    }

    NodeSet descendantsAndSelf() const {
        NodeSet found;
        sweep([&](Tree::Id id) {
            if (isPathNode(m_tree.kind(id))) {
                found.push_back(id);
            }
        });
        // An attribute in the input may stand inside an element that was swept before it.
        if (!std::is_sorted(found.begin(), found.end())) {
            std::sort(found.begin(), found.end());
        }
        return found;
    }

    NodeSet descendantsCalled(const Step& step) const {
        NodeSet found;
        const NameTable::Id name = m_tree.names().find(step.name);
        if (!step.name.empty() && name == NameTable::none) {
            return found;
        }
        // A context node is inside its own range, but a child only of one that contains it.
        std::size_t nextContext = 0;
        Tree::Id inside = 0; // the nodes below belong to a context node already passed
        sweep([&](Tree::Id id) {
            const bool child = id < inside;
            for (; nextContext < m_set.size() && m_set[nextContext] <= id; ++nextContext) {
                inside = std::max(inside, m_tree[m_set[nextContext]].next);
            }
            if (child && m_tree.kind(id) == NodeKind::Element &&
                (step.name.empty() || m_tree[id].name == name)) {
                found.push_back(id);
            }
        });
        return found;
    }

    /// The parent of each node of the set, by one walk that keeps the open nodes.
    NodeSet parents() const {
        std::vector<bool> isParent(m_set.empty() ? 0 : m_set.back() + 1);
        NodeSet open;
        Tree::Id id = Tree::document;
        for (const Tree::Id wanted : m_set) {
            for (; id <= wanted; ++id) {
                while (!open.empty() && m_tree[open.back()].next <= id) {
                    open.pop_back();
                }
                if (id == wanted && !open.empty()) {
                    isParent[open.back()] = true;
                }
                open.push_back(id);
            }
        }
        NodeSet found;
        for (Tree::Id parent = 0; parent < isParent.size(); ++parent) {
            if (isParent[parent]) {
                found.push_back(parent);
            }
        }
        return found;
    }

    /// The children or attributes that pass the step. Context nodes may stand inside each other;
    /// an outer one waits on a stack while an inner one's turn lasts, so that the result comes out
    /// in document order.
    NodeSet children(const Step& step) {
        m_step = &step;
        m_name = m_tree.names().find(step.name);
        m_found.clear();
        m_cursors.clear();
        m_counts.clear();
        if (!step.name.empty() && m_name == NameTable::none) {
            return {};
        }
        for (const Tree::Id context : m_set) {
            while (!m_cursors.empty() && m_cursors.back().end <= context) {
                finish();
            }
            if (!m_cursors.empty()) {
                advance(context);
            }
            begin(context);
        }
        while (!m_cursors.empty()) {
            finish();
        }
        return std::move(m_found);
    }

    void begin(Tree::Id context) {
        const NodeKind kind = m_tree.kind(context);
        if (kind != NodeKind::Element && kind != NodeKind::Document) {
            return;
        }
        const bool attributes = m_step->axis == Step::Axis::Attribute;
        m_cursors.push_back(
            {attributes ? context + 1 : m_tree.firstContent(context), m_tree[context].next});
        m_counts.resize(m_counts.size() + m_step->predicates.size());
    }

    void finish() {
        advance(m_cursors.back().end);
        m_cursors.pop_back();
        m_counts.resize(m_counts.size() - m_step->predicates.size());
    }

    /// Lets the innermost cursor go on up to and with the node `last`.
    void advance(Tree::Id last) {
        Cursor& cursor = m_cursors.back();
        const bool attributes = m_step->axis == Step::Axis::Attribute;
        const NodeKind kind = attributes ? NodeKind::Attribute : NodeKind::Element;
        while (cursor.at < cursor.end && cursor.at <= last) {
            const Tree::Id id = cursor.at;
            if (attributes && !isAttribute(m_tree, id)) {
                cursor.at = cursor.end;
                return;
            }
            cursor.at = m_tree[id].next;
            const bool called = m_step->name.empty() || m_tree[id].name == m_name;
            if (m_tree.kind(id) == kind && called && passes(id)) {
                m_found.push_back(id);
            }
        }
    }

    /// Each predicate counts the nodes that passed the ones before it.
    bool passes(Tree::Id id) {
        std::uint32_t* count = m_counts.data() + (m_counts.size() - m_step->predicates.size());
        for (const Predicate& predicate : m_step->predicates) {
            if (predicate.kind == Predicate::Kind::Position) {
                if (++*count != predicate.position) {
                    return false;
                }
            } else if (!passesAttribute(predicate, id)) {
                return false;
            }
            ++count;
        }
        return true;
    }

    bool passesAttribute(const Predicate& predicate, Tree::Id id) const {
        if (m_tree.kind(id) != NodeKind::Element) {
            return false;
        }
        const Tree::Id attribute = m_tree.attribute(id, predicate.name);
        return attribute != Tree::none && (predicate.kind == Predicate::Kind::HasAttribute ||
                                           attributeEquals(m_tree, attribute, predicate.value));
    }

    const Tree& m_tree;
    NodeSet m_set;

    // Of the child or attribute step in progress.
    const Step* m_step = nullptr;
    NameTable::Id m_name = NameTable::none;
    NodeSet m_found;
    std::vector<Cursor> m_cursors;
    std::vector<std::uint32_t> m_counts; ///< one a predicate and cursor
};

std::optional<LocationPath> LocationPath::compile(std::u16string_view pattern,
                                                  std::u16string& reason) {
    LocationPath path;
    if (!LocationPathReader(pattern, path, reason).read()) {
        return std::nullopt;
    }
    return path;
}

NodeSet LocationPath::select(const Tree& tree, Tree::Id context) const {
    NodeSet selected;
    for (const Alternative& alternative : m_alternatives) {
        Evaluation evaluation(tree, {alternative.absolute ? Tree::document : context});
        for (const Step& step : alternative.steps) {
            evaluation.take(step);
        }
        const NodeSet more = std::move(evaluation).result();
        NodeSet both;
        both.reserve(selected.size() + more.size());
        std::set_union(selected.begin(), selected.end(), more.begin(), more.end(),
                       std::back_inserter(both));
        selected = std::move(both);
    }
    return selected;
}

} // namespace ravikit
