#pragma once

#include "ravikit/xml/Parser.h"
#include "tests/ravikit/validity/WmlDtd.h"
#include "tests/ravikit/xml/LibXml.h"

#include <libxml/valid.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

/// libxml2's verdict on whether a deck is valid by the WML DTD, and ours beside it.
namespace libxml {

constexpr const char* wmlDtdFile = TESSALY_SOURCE_DIR "/ravikit/DTD/wml.dtd";

inline xmlParserInputPtr fetchDtd(const char* /*url*/, const char* /*id*/,
                                  xmlParserCtxtPtr context) {
    return xmlNewInputFromFile(context, wmlDtdFile);
}

constexpr int quiet = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE;

/// By a parse that validates, with the DTD named in the deck's DOCTYPE.
inline bool isValid(std::string_view utf8) {
    std::string named = "<!DOCTYPE wml SYSTEM 'wml.dtd'";
    const std::string_view doctype = "<!DOCTYPE wml";
    const bool hasDoctype = utf8.substr(0, doctype.size()) == doctype;
    named += hasDoctype ? "" : ">";
    named += utf8.substr(hasDoctype ? doctype.size() : 0);
    xmlSetExternalEntityLoader(fetchDtd);
    const int options = quiet | XML_PARSE_NOENT | XML_PARSE_DTDLOAD | XML_PARSE_DTDVALID;
    xmlParserCtxt* const context = xmlNewParserCtxt();
    xmlDoc* const document = xmlCtxtReadMemory(
        context, named.data(), static_cast<int>(named.size()), "deck", nullptr, options);
    const bool valid = context->wellFormed != 0 && context->valid != 0;
    xmlFreeDoc(document);
    xmlFreeParserCtxt(context);
    return valid;
}

/// Where libxml2 lets pass what XML does not, and why.
inline bool isExcused(const ravikit::Tree& tree, const ravikit::Problems& problems, bool peer) {
    // A reference is not the blank that it stands for, nor the nothing, where only elements or
    // nothing may stand. libxml2 has put the text in its place by then.
    return peer && std::all_of(problems.list().begin(), problems.list().end(),
                               [&tree](const ravikit::Problem& problem) {
                                   for (ravikit::Tree::Id id = 0; id < tree.size(); ++id) {
                                       if (tree[id].begin == problem.begin &&
                                           tree.kind(id) == ravikit::NodeKind::Reference) {
                                           return tree.referenceText(id).find_first_not_of(
                                                      u" \t\r\n") == std::u16string::npos;
                                       }
                                   }
                                   return false;
                               });
}

/// Empty if we agree about `text`, which starts with the wml tag or with a DOCTYPE that has an
/// internal subset; otherwise what is to be told.
inline std::string validityFault(const std::u16string& text, bool* valid = nullptr) {
    const auto& dtd = wmlDtd();
    const auto tree = ravikit::parse(text, &dtd->declarations());
    ravikit::Problems problems = tree->problems();
    if (problems.empty()) {
        dtd->judge(*tree, problems);
    }
    const std::string bytes = utf8(text);
    const bool ours = problems.empty();
    if (valid != nullptr) {
        *valid = ours;
    }
    const bool peer = isValid(bytes);
    if (ours == peer || isExcused(*tree, problems, peer)) {
        return {};
    }
    std::string told = bytes + "\nlibxml2: " + (peer ? "valid" : "not valid") + "\nwe:";
    for (const ravikit::Problem& problem : problems.list()) {
        told += "\n  " + std::to_string(problem.begin) + " " + utf8(problem.reason);
    }
    return told;
}

} // namespace libxml
