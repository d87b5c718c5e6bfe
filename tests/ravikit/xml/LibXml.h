#pragma once

#include "ravikit/text/Chars.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

/// libxml2's verdict on whether a text is well-formed.
namespace libxml {

struct Verdict {
    bool wellFormed = false;
    std::vector<int> codes; ///< of the errors, in the order in which they were found
    std::string message;    ///< of all of them

    /// Whether it complains, and of nothing but `code`.
    bool onlyComplainsOf(int code) const {
        return !codes.empty() &&
               std::all_of(codes.begin(), codes.end(), [code](int c) { return c == code; });
    }
};

inline void collect(void* verdict, xmlErrorPtr error) {
    auto& collected = *static_cast<Verdict*>(verdict);
    if (error->level >= XML_ERR_ERROR) {
        collected.codes.push_back(error->code);
        collected.message +=
            std::to_string(error->code) + " " + (error->message == nullptr ? "" : error->message);
    }
}

/// Nothing is fetched, from the disk neither.
inline xmlParserInputPtr fetchNothing(const char* /*url*/, const char* /*id*/,
                                      xmlParserCtxtPtr context) {
    return xmlNewStringInputStream(context, reinterpret_cast<const xmlChar*>(""));
}

inline Verdict verdict(std::string_view utf8) {
    xmlSetExternalEntityLoader(fetchNothing);
    // Without namespaces, which are another matter; without its own limits of depth; as UTF-8
    // whatever the text says, since we look at a text that is decoded already.
    const int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_SAX1 |
                        XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC;
    Verdict verdict;
    xmlSetStructuredErrorFunc(&verdict, collect);
    xmlParserCtxtPtr context = xmlNewParserCtxt();
    xmlDocPtr document = xmlCtxtReadMemory(context, utf8.data(), static_cast<int>(utf8.size()),
                                           "deck", nullptr, options);
    verdict.wellFormed = context->wellFormed != 0;
    xmlFreeDoc(document);
    xmlFreeParserCtxt(context);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    return verdict;
}

/// UTF-8 as libxml2 takes it; half of a pair becomes what UTF-8 does not allow.
inline std::string utf8(std::u16string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t c = ravikit::codePointAt(text, i);
        i += ravikit::unitsOf(c) - 1;
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else {
            const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
            static constexpr unsigned char lead[] = {0, 0xC0, 0xE0, 0xF0};
            out += static_cast<char>(lead[more] | (c >> (6 * more)));
            for (int shift = 6 * (more - 1); shift >= 0; shift -= 6) {
                out += static_cast<char>(0x80 | ((c >> shift) & 0x3F));
            }
        }
    }
    return out;
}

} // namespace libxml
