#pragma once

#include "ravikit/text/Lines.h"
#include "ravikit/text/Problem.h"
#include "ravikit/validity/DtdTables.h"
#include "ravikit/xml/Tree.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ravikit {

/// One judgement of one tree: a single walk over its nodes in the order of the text.
///
/// What is wrong gives one problem, and what follows from it none: of an element that is unknown
/// the attributes are not judged and the children only by themselves; an element that holds
/// something misplaced is not asked whether it is complete.
class Judge {
public:
    /// All three must outlive this.
    Judge(const DtdTables& dtd, const Tree& tree, Problems& problems);

    void run();

private:
    using Id = Tree::Id;
    static constexpr Symbol unknown = NameMeanings::unknown;
    static constexpr std::uint16_t noAttribute = NameMeanings::noAttribute;

    /// A tree with what its names mean to the DTD: the deck, or the text of an entity.
    struct Source {
        NameMeanings meanings;

        // A name may have no number: the table of a tree's names has its limit.
        Symbol element(const Node& node) const {
            return node.name < meanings.elements.size() ? meanings.elements[node.name] : unknown;
        }
        std::uint16_t attribute(const Node& node) const {
            return node.name < meanings.attributes.size() ? meanings.attributes[node.name]
                                                          : noAttribute;
        }
    };
    /// The source that is being walked.
    struct Walk {
        const Source& source;
        const Tree& tree;
        const Node* reference; // in the deck, if this is an entity's text: where problems stand
    };
    /// An element whose end has not come yet.
    struct Open {
        const ElementRules* rules = nullptr;
        Id element = Tree::document;
        Id behind = Tree::none;
        std::uint16_t state = 0;
        /// Recovery had a part in it: it may hold what was never meant to be in it.
        bool mended = true;
        /// Something is amiss in it, so that it is not asked whether it is complete.
        bool loose = true;
        /// The last thing in it was text or an element that it can never hold: what follows of the
        /// kind is the same mistake.
        bool inMisplaced = false;
    };
    struct Place {
        std::uint32_t begin;
        std::uint32_t end;
    };
    struct ReferredId {
        std::u16string value;
        Place place;
    };

    // Judge.cpp: the walk.
    const Source& sourceOf(const Tree& tree);
    void judgeRoot(const Walk& walk);
    void walkContent(const Walk& walk, Id from, Id behind);
    Id openElement(const Walk& walk, Id id);
    void placeElement(const Walk& walk, Id id, Symbol symbol);
    void closeElement(const Walk& walk);
    Open& top() { return m_open[m_depth - 1]; }
    Open& push();
    void content(const Walk& walk, Id id, NodeKind kind);
    void reference(const Walk& walk, Id id);
    void misplacedText(const Walk& walk, Id id);

    // JudgeAttributes.cpp
    Id attributes(const Walk& walk, Id element, const ElementRules& rules);
    void attributeValue(const Walk& walk, Id id, const AttributeRules& attribute);
    bool allowed(const Walk& walk, Id id, const AttributeDeclaration& declaration,
                 std::u16string_view value);
    bool identify(const Walk& walk, Id id, std::u16string_view value);
    bool refer(const Walk& walk, Id id, std::u16string_view values);
    void checkReferredIds();
    bool isUnparsedEntity(std::u16string_view name) const;

    // JudgeReasons.cpp: what the author reads.
    void tellWrongRoot(const Walk& walk, Id id);
    void tellUnknownElement(const Walk& walk, Id id);
    void tellMisplacedElement(const Walk& walk, Id id, Symbol symbol);
    void tellMisplacedText(const Walk& walk, Id id);
    void tellNotEmpty(const Walk& walk, Id id);
    void tellIncomplete(const Walk& walk, const Open& open);
    std::u16string_view tellUnknownAttribute(const Walk& walk, Id id, const ElementRules& rules);
    void tellMissingAttributes(const Walk& walk, Id element, const ElementRules& rules,
                               const std::vector<std::u16string_view>& meant);
    void tellBadValue(const Walk& walk, Id id, const AttributeDeclaration& declaration,
                      std::u16string_view value);
    void tellSecondId(const Walk& walk, Id id, std::u16string_view value, std::uint32_t first);
    void tellUnknownId(const ReferredId& referred);
    void add(ProblemKind kind, Place place, std::u16string reason);
    bool isReported(const Walk& walk, Place place) const;
    static Place placeOf(const Walk& walk, Id id);
    static Place namePlace(const Walk& walk, Id id);
    static Place valuePlace(const Walk& walk, Id attribute);
    std::u16string_view nearElement(std::u16string_view written);
    std::vector<Symbol> childrenOf(const ElementRules& rules) const;
    std::u16string mayHold(const ElementRules& rules) const;
    std::u16string whereTextGoes(const ElementRules& rules) const;
    std::vector<std::u16string_view> nextIn(const Open& open, bool onlyMissing) const;

    const DtdTables& m_dtd;
    const Tree& m_tree;
    Problems& m_problems;
    std::vector<Open> m_open; // the first m_depth of them count
    std::size_t m_depth = 0;
    Source m_deck;
    std::unordered_map<const Tree*, std::unique_ptr<Source>> m_entities;

    NameTable m_ids;
    std::vector<std::uint32_t> m_idPlaces; // by the number of the id
    std::vector<ReferredId> m_referredIds;

    std::optional<Lines> m_lines; // made when a reason first needs a line
    std::size_t m_comparisons = 0;
};

} // namespace ravikit
