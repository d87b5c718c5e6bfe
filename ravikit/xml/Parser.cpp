#include "ravikit/xml/Parser.h"

#include "ravikit/encoding/EncodingFault.h"
#include "ravikit/text/Wording.h"
#include "ravikit/xml/ParserCore.h"

#include <algorithm>

namespace ravikit {

std::shared_ptr<const Tree> parse(std::u16string text, const Declarations* known,
                                  const Limits& limits) {
    return Parser::parseDocument(std::move(text), {}, known, limits);
}

std::shared_ptr<const Tree> parseInPlace(const std::u16string& text, const Declarations* known,
                                         const Limits& limits) {
    return Parser::parseDocument({}, text, known, limits);
}

std::shared_ptr<const Tree> Parser::parseDocument(std::u16string own, std::u16string_view borrowed,
                                                  const Declarations* known, const Limits& limits) {
    const auto tree = std::make_shared<Tree>();
    tree->m_ownText = std::move(own);
    tree->m_ownText.shrink_to_fit();
    tree->m_text = borrowed.data() == nullptr ? tree->m_ownText : borrowed;
    Entities entities(known, limits);
    Parser(*tree, Kind::Document, entities, limits).run();
    if (tree->wellFormed()) {
        return tree;
    }
    auto fault = undecodedBytes(tree->text());
    if (!fault) {
        return tree;
    }
    // What was found in such a text says nothing to its author.
    const auto refused = std::make_shared<Tree>();
    refused->m_ownText = std::move(tree->m_ownText);
    refused->m_text = borrowed.data() == nullptr ? refused->m_ownText : borrowed;
    Parser(*refused, Kind::Document, entities, limits).refuse(*std::move(fault));
    return refused;
}

std::uint64_t Parser::parseReplacement(Tree& tree, std::u16string text, Entities& entities,
                                       const Limits& limits) {
    tree.m_ownText = std::move(text);
    tree.m_text = tree.m_ownText;
    Parser parser(tree, Kind::Replacement, entities, limits);
    parser.run();
    return parser.m_expanded + tree.m_text.size();
}

Parser::Parser(Tree& tree, Kind kind, Entities& entities, const Limits& limits)
    : m_tree(tree)
    , m_kind(kind)
    , m_entities(entities)
    , m_limits(limits)
    , m_begin(tree.m_text.data())
    , m_end(m_begin + tree.m_text.size()) {}

void Parser::run() {
    if (m_tree.m_text.size() > m_limits.units) {
        refuse({ProblemKind::TooLarge, 0, 0,
                u"the text is longer than " + decimal(m_limits.units) + u" characters"});
        return;
    }
    if (m_kind == Kind::Document) {
        if (auto fault = unknownEncoding(m_tree.text())) {
            refuse(*std::move(fault));
            return;
        }
    }
    push(NodeKind::Document, m_begin, m_begin);
    m_tree.m_nodes.reserve(static_cast<std::uint32_t>(m_tree.m_text.size() / 8 + 16));
    m_open.push_back({Tree::document, NameTable::none, ~0U});
    if (m_entities.known() != nullptr && m_entities.known()->names) {
        m_tree.m_names = NameTable(m_entities.known()->names);
        m_nameStates.resize(std::size_t{m_tree.m_names.size()} * 2 + 64);
    }
    At at = m_begin;
    if (m_kind == Kind::Document) {
        if (*at == 0xFEFF) {
            push(NodeKind::Blank, at, at + 1); // a byte-order mark
            ++at;
        }
        at = xmlDeclaration(at);
    }
    content(at);
    closeAtEnd();
    finish();
}

// Takes all of the text in as junk, for one reason.
void Parser::refuse(Problem problem) {
    m_isRefused = true;
    push(NodeKind::Document, m_begin, m_begin);
    push(NodeKind::Junk, m_begin, m_begin);
    m_tree.m_problems.add(problem.kind, problem.begin, problem.end, std::move(problem.reason));
    finish();
}

void Parser::closeAtEnd() {
    if (m_kind == Kind::Document && m_tree.m_documentElement == Tree::none &&
        m_tree.m_problems.empty()) {
        problem(ProblemKind::NoRoot, m_end, m_end, u"the text holds no element");
    }
    while (!atTop()) {
        const Open& top = m_open.back();
        const Node& element = node(top.element);
        if (m_tooDeep == 0 && !m_swallowed) {
            problem(ProblemKind::UnclosedElement, place(element.begin + 1),
                    place(element.begin + 1 + top.nameLength), [&] {
                        return quoted(m_tree.name(top.element)) + u" is never closed; " +
                               howToClose(top);
                    });
        }
        mark(top.element, Recovered);
        close(m_end);
    }
}

void Parser::finish() {
    const auto size = static_cast<std::uint32_t>(m_tree.m_text.size());
    for (Id id = 0; id < m_tree.m_nodes.size() && id < 2; ++id) {
        // The document, and the junk that all of a refused text is.
        if (id == 0 || m_isRefused) {
            node(id).end = size;
            node(id).next = m_tree.m_nodes.size();
        }
    }
    m_tree.m_nodes.shrink();
    m_tree.m_problems.sort();
}

Parser::At Parser::exclamation(At at) {
    if (startsWith(at, u"<!--")) {
        return comment(at);
    }
    if (startsWith(at, u"<![CDATA[")) {
        return cdata(at);
    }
    if (startsWith(at, u"<!DOCTYPE") || startsWith(at, u"<!doctype")) {
        return doctype(at);
    }
    return junk(at, ProblemKind::BadTag,
                u"`<!` begins a comment as `<!--`, or a CDATA section as `<![CDATA[`");
}

// Where text stopped at neither markup nor a blank.
Parser::At Parser::unusualText(At at) {
    if (*at != u']') {
        return character(at);
    }
    if (at[1] == u']' && at[2] == u'>') {
        problem(ProblemKind::BadCharacter, at, at + 3,
                u"`]]>` cannot stand in text; write `]]&gt;`");
    }
    return at + 1;
}

// A < that begins nothing.
Parser::At Parser::plainMark(At at) {
    if (at[1] == u'%') {
        return serverCode(at);
    }
    At const name = skipBlanks(at + 1);
    if (name != at + 1 && startsName(name) && isElementName(between(name, nameEnd(name)))) {
        return spacedStartTag(at, name);
    }
    problem(ProblemKind::BadTag, at, at + 1,
            u"`<` begins a tag; write `&lt;` for the character itself");
    return plainText(at);
}

// Code that a server runs before it sends the page.
Parser::At Parser::serverCode(At at) {
    At const close = findClose(at, u"%>");
    if (close == m_end) {
        return junk(at, ProblemKind::BadTag, u"`<%` begins code of a server page, and has no `%>`");
    }
    problem(ProblemKind::BadTag, at, close + 2,
            u"code of a server page is not WML; check the deck as the server sends it");
    push(NodeKind::Junk, at, close + 2);
    return close + 2;
}

// One unit that needs a closer look, and those like it after it.
Parser::At Parser::character(At at) {
    const auto isFar = [](char16_t c) { return c >= 0x8000 && c < 0xD800; };
    if (isFar(*at)) {
        return std::find_if_not(at + 1, m_end, isFar);
    }
    const char32_t c = codePointAt(between(at, m_end), 0);
    if (isChar(c)) {
        return at + unitsOf(c);
    }
    At end = at + 1;
    while (end != m_end && *end == *at) {
        ++end;
    }
    // Of several lone first halves the last may begin a pair.
    if (c >= 0xD800 && c <= 0xDBFF && end != at + 1) {
        --end;
    }
    problem(ProblemKind::BadCharacter, at, end, [&] {
        return c >= 0xD800 && c <= 0xDFFF
                   ? u"half of a character (" + codePointName(c) + u") stands alone"
                   : u"the character " + codePointName(c) + u" cannot stand in a text";
    });
    return end;
}

void Parser::characters(At begin, At end) {
    At at = begin;
    while ((at = scan::find(at, end, scan::Control())) < end) {
        at = character(at);
    }
}

// Something that stands where only comments, instructions and blanks may.
void Parser::outside(At begin, At end) {
    if (m_outsideEnd != begin) {
        const bool ahead = m_tree.m_documentElement == Tree::none;
        At const first = std::find_if_not(begin, end, [](char16_t c) { return isBlank(c); });
        problem(ProblemKind::TextOutsideRoot, first, end,
                ahead ? u"text before the root element, where none may stand"
                      : u"text after the root element, where none may stand");
    }
    m_outsideEnd = end;
}

// The place of `close` at or after `at`, or the end of the text.
Parser::At Parser::findClose(At at, std::u16string_view close) const {
    struct Mark {
        char16_t first;
        bool operator()(char16_t c) const { return c == first; }
#if defined(__SSE2__)
        scan::Bytes operator()(scan::Bytes b) const {
            return scan::equals(b, first);
        }
#endif
    };
    for (;; ++at) {
        at = scan::find(at, m_end, Mark{close[0]});
        if (at == m_end || startsWith(at, close)) {
            return at;
        }
    }
}

// A name that has not come yet, or that is not short.
Parser::Name Parser::readAnyName(At at, const scan::ShortName& word) {
    Name name{at, at + word.length, NameTable::none};
    if (word.length == 0) {
        name.end = nameEnd(at);
    }
    name.id = m_tree.m_names.intern(between(at, name.end));
    if (name.id >= m_nameStates.size()) {
        if (name.id == NameTable::none && !m_namesFull) {
            m_namesFull = true;
            problem(ProblemKind::TooLarge, at, name.end, u"the text holds too many names");
        }
        m_nameStates.resize(name.id == NameTable::none ? std::size_t{NameTable::none} + 1
                                                       : m_nameStates.size() * 2 + 64);
    }
    return name;
}

Parser::At Parser::nameEnd(At at) const {
    while (at != m_end) {
        const char32_t c = codePointAt(between(at, m_end), 0);
        if (!isNameChar(c)) {
            break;
        }
        at += unitsOf(c);
    }
    return at;
}

std::uint32_t Parser::lineOf(std::uint32_t offset) {
    if (!m_lines) {
        m_lines.emplace(m_tree.text());
    }
    return m_lines->at(offset).line;
}

} // namespace ravikit
