#include "document/WirelessDocument.h"

#include "display/cWMLDisplay.h"
#include "document/cWMLValidate.h"
#include "external/Platform.h"
#include "format/cWMLFormat.h"
#include "naming/dlgFileExists.h"
#include "util/Attempt.h"
#include "util/Integers.h"

namespace tessaly {

WirelessDocument::WirelessDocument()
    : m_DOM(Platform::current()->newDOMDocument())
    , m_Tolmek(Platform::current()->newTolmek())
    , m_Proxy(std::make_shared<clWMLEventProxy>()) {
    m_ProxyEvents = m_Proxy->events().advise(*this);
}

WirelessDocument::~WirelessDocument() {
    attempt([] { dlgFileExists::shared().load(); });
    attempt([] { dlgFileExists::shared().unload(); });
    m_wbPlainEvents.end();
    m_Display.reset();
    m_Format.reset();
    m_Validate.reset();
    m_Tolmek.reset();
    m_DOM.reset();
    m_Ravik.reset();
    m_ProxyEvents.end();
    m_Proxy.reset();
}

void WirelessDocument::added(bool bAdded) {
    m_added = bAdded;
}

bool WirelessDocument::added() const {
    return m_added;
}

std::u16string WirelessDocument::CurrentElementID() const {
    return m_CurrentElementID;
}

void WirelessDocument::CurrentElementID(const std::u16string& strID) {
    m_CurrentElementID = strID;
}

std::int16_t WirelessDocument::CurrentElementIndex() const {
    return m_CurrentElementIndex;
}

std::int32_t WirelessDocument::size() {
    const auto alive = keepAlive();
    if (!m_MuRtb) {
        return toInteger<std::int32_t>(m_Content.size());
    }
    if (m_View == vPLain) {
        plainToMarkup(); // if it is refused, the control's older text counts
    }
    return toInteger<std::int32_t>(require(m_MuRtb).Text().size());
}

void WirelessDocument::CurrentElementIndex(std::int16_t Idx) {
    m_CurrentElementIndex = Idx;
}

std::u16string WirelessDocument::DocumentTypeName() const {
    switch (m_DocType) {
    case dcWML:
        return u"WML";
    case dcXHTML:
    case dcCHTML:
        return u"HTML";
    case dcHDML:
        return u"HDML";
    case dcText:
        return u"Text";
    case dcXML:
        return u"XML";
    case dcRes1:
        return u"Res1";
    case dcRes2:
        return u"res2";
    case dcHTML:
        break;
    }
    return {};
}

enumView WirelessDocument::view() const {
    return static_cast<enumView>(m_View);
}

std::shared_ptr<IXMLDOMDocument2> WirelessDocument::DOM() const {
    return m_DOM;
}

void WirelessDocument::DOM(const std::shared_ptr<IXMLDOMDocument2>& oDOM) {
    m_DOM = oDOM;
}

std::shared_ptr<Tolmek> WirelessDocument::Tolmek() const {
    return m_Tolmek;
}

std::shared_ptr<Ravik> WirelessDocument::Ravik() const {
    return m_Ravik;
}

void WirelessDocument::Ravik(const ObjectRef& Ravik) {
    m_Ravik = narrow<tessaly::Ravik>(Ravik);
}

DocumentType WirelessDocument::DocType() const {
    return m_DocType;
}

std::u16string WirelessDocument::DTDPath() const {
    return m_DTDPath;
}

void WirelessDocument::AppPath(const std::u16string& strPath) {
    m_AppPath = strPath;
    if (m_DocType == dcWML) {
        m_DTDPath = m_AppPath + u"\\DTD\\wml.dtd";
        require(m_Tolmek).loadDtd(kindMarkup, m_DTDPath);
    }
}

std::u16string WirelessDocument::AppPath() const {
    return m_AppPath;
}

void WirelessDocument::DocType(DocumentType DT) {
    m_DocType = DT;
    m_Display.reset();
    m_Format.reset();
    m_Validate.reset();
    if (m_DocType == dcWML) {
        makeServices();
    }
}

void WirelessDocument::makeServices() {
    m_Display.reset(new cWMLDisplay);
    m_Display->DOM(m_DOM);
    m_Display->Tolmek(m_Tolmek);
    m_Display->Ravik(m_Ravik);
    m_Format.reset(new cWMLFormat);
    m_Format->browser(m_wbPlain);
    m_Format->MuRtb(m_MuRtb);
    m_Format->init(m_Proxy);
    m_Validate.reset(new cWMLValidate);
}

std::shared_ptr<RichTextControl> WirelessDocument::MuRtb() const {
    return m_MuRtb;
}

void WirelessDocument::MuRtb(const ObjectRef& rtb) {
    const auto alive = keepAlive();
    m_MuRtb = narrow<RichTextControl>(rtb);
    require(m_Format).MuRtb(m_MuRtb);
    if (m_MuRtb) {
        m_MuRtb->Text(m_Content);
    }
}

void WirelessDocument::wbPlain(const ObjectRef& wb) {
    const auto alive = keepAlive();
    m_wbPlain = narrow<BrowserControl>(wb);
    m_wbPlainEvents = m_wbPlain ? m_wbPlain->events().advise(*this) : Subscription();
    require(m_Format).browser(m_wbPlain);
}

std::shared_ptr<BrowserControl> WirelessDocument::wbPlain() const {
    return m_wbPlain;
}

void WirelessDocument::Listbar(const ObjectRef& lb) {
    m_ListBar = narrow<ListBarControl>(lb);
}

void WirelessDocument::Name(const std::u16string& strName) {
    m_Name = strName;
}

std::u16string WirelessDocument::Name() const {
    return m_Name;
}

std::shared_ptr<IDisplay> WirelessDocument::Display() const {
    return m_Display;
}

std::shared_ptr<IFormat> WirelessDocument::Format() const {
    return m_Format;
}

std::shared_ptr<IValidate> WirelessDocument::validate() const {
    return m_Validate;
}

void WirelessDocument::raise_OnAdd2Undo(std::int32_t& lStart, std::u16string& txt,
                                        std::u16string& delText, std::int32_t& action) {
    m_events.raise(&__WirelessDocument::OnAdd2UndoStack, lStart, txt, delText, action);
}

void WirelessDocument::OnAdd2Undo(std::int32_t& lStart, std::u16string& txt,
                                  std::u16string& delText, std::int32_t& action) {
    m_Proxy_OnAdd2Undo(lStart, txt, delText, action);
}

void WirelessDocument::m_Proxy_OnAdd2Undo(std::int32_t& lStart, std::u16string& txt,
                                          std::u16string& delText, std::int32_t& action) {
    m_events.raise(&__WirelessDocument::OnAdd2UndoStack, lStart, txt, delText, action);
}

} // namespace tessaly
