#pragma once

#include "ravikit/text/Problem.h"
#include "ravikit/xml/NameTable.h"
#include "ravikit/xml/NodeArray.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ravikit {

struct Declarations;
class Tree;

enum class NodeKind : std::uint8_t {
    Document,
    Element,
    Attribute,
    Text,      ///< characters that are not all blanks
    Blank,     ///< blanks, tabs and line ends only
    Reference, ///< &name; or &#n; as written, in content or in an attribute's value
    CData,
    Comment,
    ProcessingInstruction,
    XmlDeclaration,
    Doctype,
    Junk, ///< what recovery stepped over, such as an end tag without a start tag
};

/// Told of a node by the parser.
enum NodeFlag : std::uint8_t {
    EmptyTag = 1,  ///< an element written <name/>
    Recovered = 2, ///< recovery had a part in this node: its tags may be incomplete
    HasReference =
        4, ///< an attribute whose value holds a Reference, or is not plain in another way
};

/// A node of the tree. The nodes stand in document order, an element's attributes first, then its
/// content; `next` is the index of the first node after the subtree.
struct Node {
    std::uint32_t begin;    ///< offset of the first unit, from 0
    std::uint32_t end;      ///< offset after the last unit
    std::uint32_t next;     ///< index of the first node that is not inside this one
    std::uint32_t kind : 4; ///< NodeKind
    std::uint32_t flags : 4;
    std::uint32_t name : 24; ///< element, attribute, processing instruction, entity reference
};
static_assert(sizeof(Node) == 16);

/// What a tree keeps of an entity that the text refers to.
struct Entity {
    /// The replacement text parsed as content; none if no reference in content needed it, or if
    /// it is external or unknown.
    std::shared_ptr<const Tree> content;
    /// What a reference in an attribute's value stands for, all references in it resolved.
    std::u16string attributeText;
};

/// The lossless tree of a text: every piece of the text belongs to exactly one place in the tree,
/// so that the ranges copied back in order are the text. A tree never changes once it is parsed.
///
/// The children of the document, and those of an element between its two tags, stand one against
/// the other. Attributes stand inside the start tag with blanks between them; in a Recovered
/// element other things may stand there too. Inside an attribute only the references are nodes.
class Tree {
public:
    using Id = std::uint32_t;
    static constexpr Id document = 0;
    static constexpr Id none = 0xFFFFFFFF;

    Tree() = default;
    ~Tree();
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    Tree(Tree&&) = delete;
    Tree& operator=(Tree&&) = delete;

    std::u16string_view text() const { return m_text; }
    std::uint32_t size() const { return m_nodes.size(); }
    const Node& operator[](Id id) const { return m_nodes[id]; }

    NodeKind kind(Id id) const { return static_cast<NodeKind>(m_nodes[id].kind); }
    bool has(Id id, NodeFlag flag) const { return (m_nodes[id].flags & flag) != 0; }

    /// The slice of the text that the node stands in, its tags included.
    std::u16string_view source(Id id) const {
        return text().substr(m_nodes[id].begin, m_nodes[id].end - m_nodes[id].begin);
    }

    /// The node's name; empty for a node without one and for a character reference.
    std::u16string_view name(Id id) const {
        return m_nodes[id].name == NameTable::none ? std::u16string_view()
                                                   : m_names.text(m_nodes[id].name);
    }
    const NameTable& names() const { return m_names; }

    /// The first element at the top; `none` if there is none.
    Id documentElement() const { return m_documentElement; }

    /// Attributes come first inside an element: walk from `id + 1` while `kind` is Attribute, each
    /// time going on at `next`. Content: from `firstContent(id)` while below `(*this)[id].next`.
    Id firstContent(Id id) const;

    /// The parent, found by descent from the document: the cost is that of a walk down to the
    /// node. `none` for the document.
    Id parent(Id id) const;

    /// Where an element's start tag ends, and where its end tag begins (the element's end if it
    /// has no end tag): offsets in the text. Between the two lies the content.
    std::uint32_t startTagEnd(Id id) const;
    std::uint32_t endTagBegin(Id id) const;

    /// An attribute's value as written, without its quotes.
    std::u16string_view rawValue(Id attribute) const;

    /// An attribute's value with references resolved and blanks normalised as for CDATA.
    std::u16string value(Id attribute) const;

    /// The element's attribute of this name, or `none`.
    Id attribute(Id element, std::u16string_view name) const;

    /// The replacement text of the entity that `reference` (in content) names, parsed: a tree whose
    /// document holds it as an element would. All references to one entity share it. None for a
    /// character reference, a predefined, an external or an unknown entity.
    const Tree* entityTree(Id reference) const;

    /// The characters that `reference` stands for, in content or in an attribute's value: those of
    /// an entity's text without its markup. Empty for an external or an unknown entity, and for a
    /// reference that is not well-formed.
    std::u16string referenceText(Id reference) const;

    /// What stands against the text being well-formed, in the order of places.
    const Problems& problems() const { return m_problems; }
    bool wellFormed() const { return m_problems.empty(); }

    /// What the DOCTYPE's internal subset declares; none if there is no such subset.
    const Declarations* internalSubset() const { return m_declarations.get(); }

    /// Memory that the tree holds on to in bytes, its text included if it is its own.
    std::size_t memoryUse() const;

private:
    friend class Parser;

    std::u16string m_ownText; // empty if the text is another's
    std::u16string_view m_text;
    NodeArray m_nodes;
    NameTable m_names;
    Problems m_problems;
    std::shared_ptr<const Declarations> m_declarations;
    std::unordered_map<NameTable::Id, Entity> m_entities;
    Id m_documentElement = none;
};

} // namespace ravikit
