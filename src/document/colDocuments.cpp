#include "document/colDocuments.h"

namespace tessaly {

std::shared_ptr<WirelessDocument>
colDocuments::Add(const std::u16string& strAppPath, const std::u16string& strDocName,
                  std::u16string& strContent, const ObjectRef& /*wb*/, const ObjectRef& /*rtb*/,
                  const ObjectRef& Listbar, const ObjectRef& Ravik, const std::u16string& sKey) {
    auto document = std::make_shared<WirelessDocument>();
    document->Ravik(Ravik);

    tessaly::Ravik& markup = require(document->Ravik());
    const bool doctyped = strContent.find(u"DOCTYPE") != std::u16string::npos;
    strContent =
        doctyped ? markup.importDoctypedText(strContent) : markup.importBareText(strContent);

    // The type's setter hands the DOM to the display, so the parse comes first. The DTD is loaded
    // only for a WML document, so the path comes after the type.
    document->DOM(markup.parseMarkup(strContent, true, false));
    document->DocType(dcWML);
    document->Listbar(Listbar);
    document->Name(strDocName);
    document->AppPath(strAppPath);
    document->Content(strContent);
    document->added(true);

    m_Col.add(document, sKey.empty() ? document->Name() : sKey);
    return document;
}

std::shared_ptr<WirelessDocument> colDocuments::Item(const Value& vntIndexKey) const {
    return m_Col.item(vntIndexKey);
}

std::int32_t colDocuments::Count() const {
    return m_Col.count();
}

void colDocuments::Remove(const Value& vntIndexKey) {
    m_Col.remove(vntIndexKey);
}

std::vector<std::shared_ptr<WirelessDocument>> colDocuments::NewEnum() const {
    return m_Col.enumerate();
}

void colDocuments::Clear() {
    for (std::int32_t n = Count(); n > 0; --n) {
        Remove(1);
    }
}

} // namespace tessaly
