#include "bench/Peers.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/valid.h>
#include <libxml/xpath.h>
#include <pugixml.hpp>

#include <stdexcept>

namespace bench {

namespace {

constexpr int parseOptions = XML_PARSE_NONET | XML_PARSE_HUGE;

xmlDoc* read(std::string_view text) {
    return xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, "UTF-8",
                         parseOptions);
}

const xmlChar* xmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

} // namespace

LibXml::LibXml(const std::string& dtdPath)
    : m_dtd(xmlParseDTD(nullptr, xmlText(dtdPath.c_str()))) {
    if (m_dtd == nullptr) {
        throw std::runtime_error("libxml2 cannot use " + dtdPath);
    }
}

LibXml::~LibXml() {
    xmlFreeDtd(static_cast<xmlDtd*>(m_dtd));
}

bool LibXml::parseAndJudge(std::string_view text) const {
    xmlDoc* document = read(text);
    if (document == nullptr) {
        return false;
    }
    xmlValidCtxt* context = xmlNewValidCtxt();
    const bool valid = xmlValidateDtd(context, document, static_cast<xmlDtd*>(m_dtd)) == 1;
    xmlFreeValidCtxt(context);
    xmlFreeDoc(document);
    return valid;
}

std::shared_ptr<void> LibXml::parse(std::string_view text) {
    return {read(text), [](void* document) { xmlFreeDoc(static_cast<xmlDoc*>(document)); }};
}

std::size_t LibXml::cardsMarkup(void* document) {
    auto* doc = static_cast<xmlDoc*>(document);
    xmlXPathContext* context = xmlXPathNewContext(doc);
    xmlXPathObject* cards = xmlXPathEval(xmlText("//card"), context);
    std::size_t bytes = 0;
    for (int i = 0; i < cards->nodesetval->nodeNr; ++i) {
        xmlBuffer* markup = xmlBufferCreate();
        xmlNodeDump(markup, doc, cards->nodesetval->nodeTab[i], 0, 0);
        bytes += static_cast<std::size_t>(xmlBufferLength(markup));
        xmlBufferFree(markup);
    }
    xmlXPathFreeObject(cards);
    xmlXPathFreeContext(context);
    return bytes;
}

std::string LibXml::version() {
    return LIBXML_DOTTED_VERSION;
}

std::shared_ptr<void> Pugi::parse(std::string_view text, Kept kept) {
    const unsigned blanks = kept == Kept::FullAndBlanks ? pugi::parse_ws_pcdata : 0;
    auto document = std::make_shared<pugi::xml_document>();
    const bool parsed = static_cast<bool>(document->load_buffer(
        text.data(), text.size(), pugi::parse_full | blanks, pugi::encoding_utf8));
    return parsed ? document : nullptr;
}

std::string Pugi::version() {
    return std::to_string(PUGIXML_VERSION / 1000) + "." +
           std::to_string(PUGIXML_VERSION % 1000 / 10);
}

} // namespace bench
