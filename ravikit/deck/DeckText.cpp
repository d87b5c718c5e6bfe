#include "ravikit/deck/DeckText.h"

#include "ravikit/encoding/Declared.h"
#include "ravikit/encoding/EncodingFault.h"
#include "ravikit/text/Chars.h"
#include "ravikit/xml/Parser.h"

#include <string_view>
#include <utility>

namespace ravikit {
namespace {

/// The deck's own way to end a line.
std::u16string_view lineEndOf(std::u16string_view text) {
    const std::size_t at = text.find_first_of(u"\r\n");
    if (at == std::u16string_view::npos) {
        return u"\n";
    }
    return text.substr(at, text.substr(at).starts_with(u"\r\n") ? 2 : 1);
}

/// What stands before the root.
struct Prolog {
    bool ofDeck = false; ///< a `wml` root follows, and nothing is ahead that should not be
    bool declaration = false;
    bool doctype = false;
    std::size_t root = 0; ///< offset
};

Prolog prologOf(std::u16string_view text) {
    const auto tree = parse(std::u16string(text));
    Prolog prolog;
    const Tree::Id root = tree->documentElement();
    if (root == Tree::none) {
        return prolog;
    }
    prolog.ofDeck = tree->name(root) == u"wml";
    prolog.root = (*tree)[root].begin;
    for (Tree::Id id = Tree::document + 1; id < tree->size(); id = (*tree)[id].next) {
        switch (tree->kind(id)) {
        case NodeKind::XmlDeclaration:
            prolog.declaration = true;
            break;
        case NodeKind::Doctype:
            prolog.doctype = true; // after the root too: one at a wrong place is enough
            break;
        case NodeKind::ProcessingInstruction:
            // A declaration that does not come first: what is to be done only its author knows.
            prolog.ofDeck = prolog.ofDeck && asciiLowerCase(tree->name(id)) != u"xml";
            break;
        case NodeKind::Comment:
        case NodeKind::Blank:
            break;
        default:
            prolog.ofDeck = prolog.ofDeck && id >= root;
        }
    }
    return prolog;
}

} // namespace

std::u16string importDeck(std::u16string text) {
    if (text.starts_with(byteOrderMark)) {
        text.erase(0, 1);
    }
    return text;
}

std::u16string declareUtf8(std::u16string text) {
    const auto declared = declaredEncoding(text);
    if (declared && asciiLowerCase(declaredName(text)) != u"utf-8") {
        text.replace(declared->begin, declared->end - declared->begin, u"UTF-8");
    }
    return text;
}

std::u16string exportDeck(std::u16string text) {
    if (unknownEncoding(text) || undecodedBytes(text)) {
        return text; // its bytes go back as they are, and what it says of them stays
    }
    text = declareUtf8(std::move(text));
    const std::size_t start = text.starts_with(byteOrderMark) ? 1 : 0;
    const std::u16string_view body = std::u16string_view(text).substr(start);
    const Prolog prolog = prologOf(body);
    if (!prolog.ofDeck) {
        return text;
    }
    const std::u16string lineEnd(lineEndOf(body));
    if (!prolog.doctype) {
        std::u16string doctype = u"<!DOCTYPE wml PUBLIC \"-//WAPFORUM//DTD WML 1.3//EN\" "
                                 u"\"http://www.wapforum.org/DTD/wml13.dtd\">" +
                                 lineEnd;
        if (prolog.root > 0 && !isBlank(body[prolog.root - 1])) {
            doctype.insert(0, lineEnd);
        }
        text.insert(start + prolog.root, doctype);
    }
    if (!prolog.declaration) {
        text.insert(start, u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + lineEnd);
    }
    return text;
}

} // namespace ravikit
