#include "ravikit/encoding/Declared.h"
#include "ravikit/text/Wording.h"
#include "ravikit/xml/ParserCore.h"

#include <algorithm>
#include <memory>

namespace ravikit {
namespace {

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

bool isLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isVersion(std::u16string_view value) {
    return value.size() > 2 && value.substr(0, 2) == u"1." &&
           std::all_of(value.begin() + 2, value.end(), isDigit);
}

bool isPublicIdCharacter(char16_t c) {
    return isLetter(c) || isDigit(c) ||
           (c != 0 &&
            std::u16string_view(u" \r\n-'()+,./:=?;!*#@$_%").find(c) != std::u16string_view::npos);
}

} // namespace

// At the start of the text; gives `at` if there is no XML declaration.
Parser::At Parser::xmlDeclaration(At at) {
    if (!startsWith(at, u"<?xml") || isNameChar(codePointAt(between(at, m_end + 1), 5))) {
        return at;
    }
    At p = at + 5;
    At end = p;
    while (end != m_end && *end != u'>' && *end != u'<') {
        ++end;
    }
    const bool closed = end != m_end && *end == u'>';
    const bool closedWell = closed && end != p && end[-1] == u'?';
    At const bodyEnd = closedWell ? end - 1 : end;
    end += closed ? 1 : 0;

    const auto version = pseudoAttribute(p, bodyEnd, u"version");
    const auto encoding = pseudoAttribute(p, bodyEnd, u"encoding");
    const auto standalone = pseudoAttribute(p, bodyEnd, u"standalone");
    p = scan::skipBlanks(p, bodyEnd);
    m_standalone = standalone == u"yes";

    std::u16string reason;
    std::u16string_view wrong = between(at, end);
    if (!version) {
        reason = u"the XML declaration must begin as `<?xml version=\"1.0\"`";
    } else if (!isVersion(*version)) {
        wrong = *version;
        reason = quoted(*version) + u" is no version of XML; write `version=\"1.0\"`";
    } else if (encoding && !isEncodingName(*encoding)) {
        wrong = *encoding;
        reason = quoted(*encoding) + u" cannot be the name of an encoding; one is `UTF-8`";
    } else if (standalone && standalone != u"yes" && standalone != u"no") {
        wrong = *standalone;
        reason = u"`standalone` is `yes` or `no`, not " + quoted(*standalone);
    } else if (p != bodyEnd) {
        wrong = between(p, bodyEnd);
        reason = quoted(wrong) +
                 u" cannot stand in the XML declaration, which holds `version`, then `encoding`, "
                 u"then `standalone`";
    } else if (!closedWell) {
        reason = u"the XML declaration must end with `?>`";
    }
    if (!reason.empty()) {
        problem(ProblemKind::BadXmlDeclaration, wrong.data(), wrong.data() + wrong.size(), reason);
    }
    push(NodeKind::XmlDeclaration, at, end, NameTable::none, recoveredIf(!reason.empty()));
    return end;
}

// The value of the pseudo-attribute `name` if it is the one that stands at `at`, which then moves
// after it.
std::optional<std::u16string_view> Parser::pseudoAttribute(At& at, At end,
                                                           std::u16string_view name) {
    At p = scan::skipBlanks(at, end);
    if (p == at || between(p, end).substr(0, name.size()) != name) {
        return std::nullopt;
    }
    p = scan::skipBlanks(p + name.size(), end);
    if (p == end || *p != u'=') {
        return std::nullopt;
    }
    p = scan::skipBlanks(p + 1, end);
    if (p == end || (*p != u'"' && *p != u'\'')) {
        return std::nullopt;
    }
    At const close = std::find(p + 1, end, *p);
    if (close == end) {
        return std::nullopt;
    }
    at = close + 1;
    return between(p + 1, close);
}

Parser::At Parser::doctype(At at) {
    const bool inForce = outsideRoot() && m_tree.m_documentElement == Tree::none && !m_doctypeSeen;
    const std::size_t problems = m_tree.m_problems.list().size();
    if (!inForce) {
        problem(ProblemKind::BadDoctype, at, at + 9,
                u"only one DOCTYPE may stand in a text, before the root element");
    } else if (at[2] != u'D') {
        problem(ProblemKind::BadDoctype, at, at + 9, u"write `<!DOCTYPE` in capital letters");
    }
    m_doctypeSeen = m_doctypeSeen || inForce;
    At const end = doctypeBody(at + 9, inForce);
    push(NodeKind::Doctype, at, end, NameTable::none,
         recoveredIf(m_tree.m_problems.list().size() != problems));
    return end;
}

// From after the word DOCTYPE. One that is not in force is stepped over without a word.
Parser::At Parser::doctypeBody(At at, bool inForce) {
    const auto fault = [&](At where, std::u16string_view reason) {
        return inForce ? doctypeFault(where, reason) : doctypeEnd(where);
    };
    At p = skipBlanks(at);
    if (p == at || !startsName(p)) {
        return fault(p, u"after `<!DOCTYPE` comes the name of the root element");
    }
    At const name = readName(p).end;
    p = skipBlanks(name);
    const bool external = startsWith(p, u"SYSTEM") || startsWith(p, u"PUBLIC");
    if (external) {
        At const id = p == name ? nullptr : externalId(p);
        if (id == nullptr) {
            return fault(p, u"a DTD is named by `PUBLIC \"...\" \"...\"` or by `SYSTEM \"...\"`");
        }
        p = skipBlanks(id);
    }
    if (*p == u'[') {
        At const subset = p;
        p = internalSubset(p, inForce, external);
        if (p == nullptr) {
            return fault(subset, u"the declarations that `[` begins have no `]`");
        }
        p = skipBlanks(p);
    } else if (inForce) {
        m_entities.declare(nullptr, !external || m_standalone);
    }
    if (*p != u'>' || p == m_end) {
        return fault(p, u"the DOCTYPE must end with `>`");
    }
    return p + 1;
}

// At SYSTEM or PUBLIC; gives the place after, or none if it is not as it must be.
Parser::At Parser::externalId(At at) {
    At p = at + 6;
    if (*at == u'P') {
        At const gap = p;
        p = skipBlanks(p);
        p = p == gap ? nullptr : literal(p, true);
        if (p == nullptr) {
            return nullptr;
        }
    }
    At const gap = p;
    p = skipBlanks(p);
    return p == gap ? nullptr : literal(p, false);
}

Parser::At Parser::literal(At at, bool isPublic) {
    if (at == m_end || (*at != u'"' && *at != u'\'')) {
        return nullptr;
    }
    At const close = findClose(at + 1, std::u16string_view(at, 1));
    if (close == m_end || (isPublic && !std::all_of(at + 1, close, isPublicIdCharacter))) {
        return nullptr;
    }
    characters(at + 1, close);
    return close + 1;
}

// At the [; gives the place after the ], or none.
Parser::At Parser::internalSubset(At at, bool inForce, bool external) {
    if (m_noSubsetEnd) {
        return nullptr;
    }
    At const begin = at + 1;
    At const end = place(internalSubsetEnd(m_tree.text(), offset(begin)));
    m_noSubsetEnd = end == m_end;
    if (m_noSubsetEnd) {
        return nullptr;
    }
    if (inForce) {
        const auto declarations = std::make_shared<Declarations>(
            readDeclarations(m_tree.text(), offset(begin), offset(end), true, m_tree.m_problems,
                             {.external = external, .standalone = m_standalone, .known = nullptr}));
        m_tree.m_declarations = declarations;
        m_entities.declare(declarations.get(),
                           (!external && !declarations->incomplete) || m_standalone);
    }
    return end + 1;
}

Parser::At Parser::doctypeFault(At at, std::u16string_view reason) {
    // What it would have declared is not known, so that nothing is held to be undeclared.
    m_entities.declare(m_tree.m_declarations.get(), false);
    problem(ProblemKind::BadDoctype, at, at, reason);
    return doctypeEnd(at);
}

// Where a DOCTYPE is taken to end that is not as it must be at `at`.
Parser::At Parser::doctypeEnd(At at) const {
    const bool inSubset = *at == u'[';
    while (at != m_end) {
        if (*at == u'<' && (!inSubset || startsName(at + 1))) {
            break;
        }
        if (*at == u'>' && !inSubset) {
            return at + 1;
        }
        ++at;
    }
    return at;
}

} // namespace ravikit
