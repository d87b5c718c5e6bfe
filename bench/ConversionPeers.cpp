#include "bench/ConversionPeers.h"

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>
#include <libxslt/transform.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>
#include <tidy/tidy.h>
#include <tidy/tidybuffio.h>

#include <memory>
#include <stdexcept>

namespace bench {

namespace {

const char* chars(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

struct FreeDocument {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

int length(std::string_view text) {
    return static_cast<int>(text.size());
}

} // namespace

Stylesheet::Stylesheet(const std::string& path)
    : m_stylesheet(xsltParseStylesheetFile(reinterpret_cast<const unsigned char*>(path.c_str()))) {
    if (m_stylesheet == nullptr) {
        throw std::runtime_error("libxslt cannot use " + path);
    }
}

Stylesheet::~Stylesheet() {
    xsltFreeStylesheet(static_cast<xsltStylesheet*>(m_stylesheet));
}

std::string Stylesheet::apply(std::string_view markup) const {
    auto* const stylesheet = static_cast<xsltStylesheet*>(m_stylesheet);
    const Document deck(xmlReadMemory(markup.data(), length(markup), nullptr, "UTF-8",
                                      XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOCDATA));
    const Document page(deck ? xsltApplyStylesheet(stylesheet, deck.get(), nullptr) : nullptr);
    xmlChar* text = nullptr;
    int size = 0;
    if (!page || xsltSaveResultToString(&text, &size, page.get(), stylesheet) != 0) {
        return {};
    }
    std::string html(chars(text), static_cast<std::size_t>(size));
    xmlFree(text);
    return html;
}

std::string Stylesheet::version() {
    return LIBXSLT_DOTTED_VERSION;
}

std::string tidied(std::string_view html) {
    const std::unique_ptr<const _TidyDoc, void (*)(TidyDoc)> document(tidyCreate(), tidyRelease);
    TidyDoc tidy = document.get();
    tidyOptSetBool(tidy, TidyXhtmlOut, yes);
    tidyOptSetBool(tidy, TidyForceOutput, yes);
    tidyOptSetBool(tidy, TidyMark, no);
    tidyOptSetInt(tidy, TidyWrapLen, 0);
    tidyOptSetBool(tidy, TidyQuiet, yes);
    tidyOptSetBool(tidy, TidyShowWarnings, no);
    tidyOptSetInt(tidy, TidyShowErrors, 0);
    tidySetCharEncoding(tidy, "utf8");

    TidyBuffer messages{};
    TidyBuffer in{};
    TidyBuffer out{};
    tidyBufInit(&messages);
    tidyBufInit(&in);
    tidyBufInit(&out);
    tidySetErrorBuffer(tidy, &messages);
    tidyBufAttach(&in, const_cast<byte*>(reinterpret_cast<const byte*>(html.data())),
                  static_cast<uint>(html.size()));
    std::string xhtml;
    if (tidyParseBuffer(tidy, &in) >= 0 && tidyCleanAndRepair(tidy) >= 0 &&
        tidySaveBuffer(tidy, &out) >= 0) {
        xhtml.assign(reinterpret_cast<const char*>(out.bp), out.size);
    }
    tidyBufDetach(&in);
    tidyBufFree(&out);
    tidyBufFree(&messages);
    return xhtml;
}

std::string tidyVersion() {
    return tidyLibraryVersion();
}

HtmlWalk::HtmlWalk(std::string_view html) {
    const Document page(htmlReadMemory(html.data(), length(html), nullptr, "UTF-8",
                                       HTML_PARSE_RECOVER | HTML_PARSE_NOERROR |
                                           HTML_PARSE_NOWARNING | HTML_PARSE_NONET |
                                           HTML_PARSE_COMPACT));
    const xmlNode* node = page ? xmlDocGetRootElement(page.get()) : nullptr;
    while (node != nullptr) {
        if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) {
            text += chars(node->content);
        } else if (node->type == XML_ELEMENT_NODE) {
            names += chars(node->name);
            names += ' ';
            if (node->children != nullptr) {
                node = node->children;
                continue;
            }
        }
        while (node != nullptr && node->next == nullptr) {
            node = node->parent;
        }
        node = node == nullptr ? nullptr : node->next;
    }
}

} // namespace bench
