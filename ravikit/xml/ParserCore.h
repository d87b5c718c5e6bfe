#pragma once

#include "ravikit/text/Lines.h"
#include "ravikit/text/Scan.h"
#include "ravikit/xml/Entities.h"
#include "ravikit/xml/Parser.h"
#include "ravikit/xml/Tree.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace ravikit {

/// One run over one text, from its first unit to its last, which fills a tree. What may nest is
/// kept on a stack of its own; the only recursion is that of entities, which has its limit.
///
/// A function that reads a construct takes the place where it begins and gives the place after
/// it. The text is followed by a NUL, so that the unit at `m_end` may be looked at.
class Parser {
public:
    /// Reads a document: `borrowed`, or `own` if that is none.
    static std::shared_ptr<const Tree> parseDocument(std::u16string own,
                                                     std::u16string_view borrowed,
                                                     const Declarations* known,
                                                     const Limits& limits);

    /// Reads the replacement text of an entity into the empty `tree`; gives how many units it
    /// expands to.
    static std::uint64_t parseReplacement(Tree& tree, std::u16string text, Entities& entities,
                                          const Limits& limits);

private:
    using At = const char16_t*;
    using Id = Tree::Id;
    enum class Kind : std::uint8_t { Document, Replacement };

    struct Name {
        At begin;
        At end;
        NameTable::Id id;
    };
    /// An element whose end tag has not come yet; at the bottom the document.
    struct Open {
        Id element;
        NameTable::Id name;
        std::uint32_t nameLength;
    };
    /// What is kept of each name.
    struct NameState {
        std::uint32_t lastTag = 0; ///< the tag in which it was last an attribute's name
        std::uint32_t open = 0;    ///< how many open elements bear it
    };
    /// A start tag while it is being read.
    struct Tag {
        Id element;
        std::uint32_t flags = 0;
        bool reported = false; ///< that there is something in it that should not be there
    };
    /// A reference as far as its form goes.
    struct Reference {
        At end = nullptr; ///< none if it is no reference at all
        bool isCharacter = false;
        NameTable::Id name = NameTable::none;
    };
    /// An element that an outer end tag closed, whose own end tag may still come.
    struct ClosedEarly {
        NameTable::Id name;
        std::size_t depth; ///< how much was open afterwards
    };

    Parser(Tree& tree, Kind kind, Entities& entities, const Limits& limits);

    // Parser.cpp: the run, and what is rare in text.
    void run();
    void refuse(Problem problem);
    void closeAtEnd();
    void finish();
    At exclamation(At at);
    At plainMark(At at);
    At serverCode(At at);
    At unusualText(At at);
    At character(At at);
    void characters(At begin, At end);
    void outside(At begin, At end);

    // ParserContent.cpp: text and tags that are as they should be.
    void content(At at);
    At markup(At at);
    At text(At at);
    At textEnd(At at);
    At plainText(At at);
    At startTag(At at, At nameAt);
    At spacedStartTag(At at, At name);
    At attributes(At at, Tag& tag);
    At attribute(At at, Tag& tag);
    At value(At begin, At stop, char16_t quote, Id attribute);
    At endTag(At at);

    // ParserTags.cpp: elements and end tags that are not.
    void topElement(Id element);
    At tooDeep(const Tag& tag, At end);
    At namedEndTag(At at, At name);
    At namelessEndTag(At at);
    void mismatchedEndTag(At at, At end, const Name& name);
    bool misspeltTag(At at, At end, std::u16string_view word);
    At nextEndOfLevel(At from) const;
    bool isElementName(std::u16string_view name) const;
    bool isDeclaredEmpty(std::u16string_view name) const;
    std::u16string howToClose(const Open& open) const;
    void forgetClosedEarly();
    bool wasClosedEarly(NameTable::Id name);
    void closeTop(At at, std::u16string_view closer);
    At endOfEndTag(At at, At nameEnd);

    // ParserRecovery.cpp: start tags that are not.
    At junkInTag(At at, Tag& tag);
    void unclosedTag(At at, Tag& tag);
    void missingBlank(At at, Tag& tag);
    void duplicateAttribute(Id attribute, Tag& tag);
    At attributeWithoutValue(At end, Id attribute, Tag& tag);
    At valueWithoutQuotes(At at, Id attribute, Tag& tag);
    At unusualValueEnd(At begin, At stop, Id attribute, Tag& tag, std::size_t problems);
    At quoteForgotten(At begin, At closing) const;
    At endOfOpenValue(At begin, At stop) const;
    At valueWithoutEnd(At begin, At end, Id attribute, Tag& tag, std::size_t problems);
    At closingQuoteNear(At at, char16_t quote) const;
    void markInValue(At at, Id attribute);

    // ParserReferences.cpp
    At reference(At at);
    At valueReference(At at, Id attribute);
    Reference readReference(At at);
    Reference readCharacterReference(At at);
    void expand(At at, const Reference& reference, bool inValue);

    // ParserMarkup.cpp: comments, CDATA sections, instructions.
    At comment(At at);
    At cdata(At at);
    At instruction(At at);
    At junk(At at, ProblemKind kind, std::u16string_view reason);

    // ParserProlog.cpp: the XML declaration and the DOCTYPE.
    At xmlDeclaration(At at);
    std::optional<std::u16string_view> pseudoAttribute(At& at, At end, std::u16string_view name);
    At doctype(At at);
    At doctypeBody(At at, bool inForce);
    At externalId(At at);
    At literal(At at, bool isPublic);
    At internalSubset(At at, bool inForce, bool external);
    At doctypeEnd(At at) const;
    At doctypeFault(At at, std::u16string_view reason);

    bool atTop() const { return m_open.size() == 1; }
    bool outsideRoot() const { return atTop() && m_kind == Kind::Document; }
    std::uint32_t offset(At at) const { return static_cast<std::uint32_t>(at - m_begin); }
    At place(std::uint32_t offset) const { return m_begin + offset; }
    static std::u16string_view between(At begin, At end) {
        return {begin, static_cast<std::size_t>(end - begin)};
    }
    bool startsWith(At at, std::u16string_view words) const {
        return between(at, m_end).substr(0, words.size()) == words;
    }
    bool startsName(At at) const {
        return *at < 0x80 ? isNameStart(*at) : isNameStart(codePointAt(between(at, m_end), 0));
    }
    At skipBlanks(At at) const { return scan::skipBlanks(at, m_end); }
    At findClose(At at, std::u16string_view close) const;
    Name readName(At at) {
        const scan::ShortName name = scan::shortName(at, m_end);
        if (name.length != 0) {
            const NameTable::Id id = m_tree.m_names.find(name.key);
            if (id != NameTable::none) {
                return {at, at + name.length, id};
            }
        }
        return readAnyName(at, name);
    }
    Name readAnyName(At at, const scan::ShortName& word);
    At nameEnd(At at) const;

    Id push(NodeKind kind, At begin, At end, NameTable::Id name = NameTable::none,
            std::uint32_t flags = 0) {
        return m_tree.m_nodes.push({offset(begin), offset(end), m_tree.m_nodes.size() + 1,
                                    static_cast<std::uint32_t>(kind) & 0xFU, flags & 0xFU,
                                    name & 0xFFFFFFU});
    }
    Node& node(Id id) { return m_tree.m_nodes[id]; }
    void close(At end) {
        const Open& top = m_open.back();
        Node& element = node(top.element);
        element.end = offset(end);
        element.next = m_tree.m_nodes.size();
        --m_nameStates[top.name].open;
        m_open.pop_back();
    }
    /// Whether `next` may stand after a closing quote.
    static bool endsValue(char16_t next) { return next == u'>' || next == u'/' || isBlank(next); }
    void mark(Id id, NodeFlag flag) { node(id).flags = (node(id).flags | flag) & 0xFU; }
    static std::uint32_t recoveredIf(bool broken) { return broken ? std::uint32_t{Recovered} : 0; }

    /// Notes a problem. `reason` is a text, or gives one: it is then asked only if the list still
    /// takes it, so that the ten-thousand-and-first error costs next to nothing.
    template <class Reason>
    void problem(ProblemKind kind, At begin, At end, const Reason& reason) {
        if (m_tree.m_problems.full()) {
            return;
        }
        if constexpr (std::is_invocable_v<Reason>) {
            m_tree.m_problems.add(kind, offset(begin), offset(end), reason());
        } else {
            m_tree.m_problems.add(kind, offset(begin), offset(end), std::u16string(reason));
        }
    }
    std::uint32_t lineOf(std::uint32_t offset);

    Tree& m_tree;
    Kind m_kind;
    Entities& m_entities;
    Limits m_limits;
    At m_begin;
    At m_end;
    std::vector<Open> m_open;
    std::vector<NameState> m_nameStates;
    std::vector<ClosedEarly> m_closedEarly;
    std::optional<Lines> m_lines; // made when the first reason names a line
    std::uint32_t m_tag = 0;
    std::uint32_t m_tooDeep = 0; // how many elements are open beyond the limit
    std::uint64_t m_expanded = 0;
    At m_outsideEnd = nullptr; // where the last text outside the root ended that was reported
    bool m_standalone = false;
    bool m_doctypeSeen = false;
    bool m_isRefused = false;
    bool m_secondRootTold = false;
    bool m_tooDeepTold = false;
    bool m_swallowed = false; // something without an end took in all the rest
    bool m_noInstructionEnd = false;
    bool m_noSubsetEnd = false;
    bool m_namesFull = false;
    bool m_expandedTold = false;
};

} // namespace ravikit
