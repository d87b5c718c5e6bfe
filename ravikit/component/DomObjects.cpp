#include "ravikit/component/DomObjects.h"

#include "ravikit/component/Objects.h"
#include "ravikit/path/LocationPath.h"
#include "ravikit/xml/Parser.h"
#include "ravikit/xml/Standalone.h"
#include "util/Failure.h"

#include <map>
#include <utility>

namespace tessaly {

namespace {

using ravikit::NodeKind;
using ravikit::NodeSet;
using ravikit::Tree;
using NodesRef = std::shared_ptr<const NodeSet>;

/// A tree with the answers that were given about the whole of it: a host asks for the cards again
/// at every step from card to card.
class Source {
public:
    explicit Source(std::shared_ptr<const Tree> tree)
        : m_tree(std::move(tree)) {}

    const Tree& tree() const { return *m_tree; }

    NodesRef select(const std::u16string& pattern, Tree::Id context) {
        if (context != Tree::document) {
            return evaluate(pattern, context);
        }
        return remember(m_selections, pattern, [&] { return evaluate(pattern, context); });
    }

    NodesRef elementsCalled(const std::u16string& name) {
        return remember(m_elements, name, [&] {
            auto found = std::make_shared<NodeSet>();
            for (Tree::Id id = 0; id < m_tree->size(); ++id) {
                if (m_tree->kind(id) == NodeKind::Element &&
                    (name == u"*" || m_tree->name(id) == name)) {
                    found->push_back(id);
                }
            }
            return found;
        });
    }

private:
    using Answers = std::map<std::u16string, NodesRef>;
    static constexpr std::size_t mostAnswers = 16;

    template <class Ask>
    static NodesRef remember(Answers& answers, const std::u16string& question, Ask&& ask) {
        const auto known = answers.find(question);
        if (known != answers.end()) {
            return known->second;
        }
        NodesRef answer = ask();
        if (answers.size() == mostAnswers) {
            answers.clear();
        }
        answers.emplace(question, answer);
        return answer;
    }

    NodesRef evaluate(const std::u16string& pattern, Tree::Id context) const {
        std::u16string reason;
        const auto path = ravikit::LocationPath::compile(pattern, reason);
        if (!path) {
            throw Failure(FailureCode::InvalidArgument, reason);
        }
        return std::make_shared<const NodeSet>(path->select(*m_tree, context));
    }

    std::shared_ptr<const Tree> m_tree;
    Answers m_selections;
    Answers m_elements;
};

using SourceRef = std::shared_ptr<Source>;

class DomNodeList : public IXMLDOMNodeList {
public:
    DomNodeList(SourceRef source, NodesRef nodes)
        : m_source(std::move(source))
        , m_nodes(std::move(nodes)) {}

    std::int32_t length() override { return static_cast<std::int32_t>(m_nodes->size()); }
    std::shared_ptr<IXMLDOMNode> item(std::int32_t index) override;

private:
    SourceRef m_source;
    NodesRef m_nodes;
};

/// What a document and every other node have in common. `Interface` is the one that it stands
/// after.
template <class Interface>
class DomNode : public Interface {
public:
    DomNode(SourceRef source, Tree::Id id)
        : m_source(std::move(source))
        , m_id(id) {}

    std::u16string xml() override { return ravikit::standaloneText(m_source->tree(), m_id); }

    std::shared_ptr<IXMLDOMNodeList> selectNodes(const std::u16string& pattern) override {
        return list(m_source->select(pattern, m_id));
    }

    std::shared_ptr<IXMLDOMNodeList> childNodes() override {
        const Tree& tree = m_source->tree();
        auto children = std::make_shared<NodeSet>();
        for (Tree::Id id = tree.firstContent(m_id); id < tree[m_id].next; id = tree[id].next) {
            children->push_back(id);
        }
        return list(std::move(children));
    }

protected:
    std::shared_ptr<IXMLDOMNodeList> list(NodesRef nodes) const {
        return std::make_shared<DomNodeList>(m_source, std::move(nodes));
    }

    Source& source() const { return *m_source; }

private:
    SourceRef m_source;
    Tree::Id m_id;
};

class DomDocument : public DomNode<IXMLDOMDocument2> {
public:
    explicit DomDocument(SourceRef source)
        : DomNode(std::move(source), Tree::document) {}

    std::shared_ptr<IXMLDOMNodeList> getElementsByTagName(const std::u16string& name) override {
        return list(source().elementsCalled(name));
    }
};

std::shared_ptr<IXMLDOMNode> DomNodeList::item(std::int32_t index) {
    if (index < 0 || index >= length()) {
        return nullptr;
    }
    const Tree::Id id = (*m_nodes)[static_cast<std::size_t>(index)];
    if (id == Tree::document) {
        return std::make_shared<DomDocument>(m_source);
    }
    return std::make_shared<DomNode<IXMLDOMNode>>(m_source, id);
}

} // namespace

std::shared_ptr<IXMLDOMDocument2> makeDOMDocument(std::shared_ptr<const Tree> tree) {
    return std::make_shared<DomDocument>(std::make_shared<Source>(std::move(tree)));
}

std::shared_ptr<IXMLDOMDocument2> makeEmptyDOMDocument() {
    return makeDOMDocument(ravikit::parse({}));
}

} // namespace tessaly
