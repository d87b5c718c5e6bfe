#include "format/cWMLFormat.h"

#include "external/Platform.h"

namespace tessaly {

namespace {

struct CatalogueRow {
    const char16_t* caption; // and key
    const char16_t* toolTiptext;
    const char16_t* iconRes;
    const char16_t* iconResSmall;
};

constexpr CatalogueRow catalogue[] = {
    {u"Bold", u"Bold current selection", u"BOLD", u"BOLDS"},
    {u"Italic", u"Italicise current selection", u"ITALIC", u"ITALICS"},
    {u"Underline", u"Underline current selection", u"UNDERLINE", u"UNDERLINES"},
    {u"Align Left", u"Align current selection to the left", u"ALIGNL", u"ALIGNLS"},
    {u"Align Center", u"Align current selection to the center", u"ALIGNC", u"ALIGNCS"},
    {u"Align Right", u"Align current selection to the right", u"ALIGNR", u"ALIGNRS"},
    {u"Big Font", u"Change selection to BIG font", u"BIG", u"BIGS"},
    {u"Small Font", u"Change selection to SMALL font", u"SMALL", u"SMALLS"},
};

} // namespace

cWMLFormat::cWMLFormat()
    : m_formats(std::make_shared<colWMLFormats>()) {
    for (const CatalogueRow& row : catalogue) {
        m_formats->Add(row.caption, row.toolTiptext, row.iconRes, row.iconResSmall, row.caption);
    }
}

cWMLFormat::~cWMLFormat() {
    m_formats.reset();
    m_Proxy.reset();
}

void cWMLFormat::MuRtb(const ObjectRef& rtb) {
    m_MuRtb = narrow<RichTextControl>(rtb);
}

void cWMLFormat::browser(const ObjectRef& browser) {
    m_browser = narrow<BrowserControl>(browser);
}

ObjectRef cWMLFormat::icon(const Value& strFormat) {
    const std::shared_ptr<clWMLFormat> format = m_formats->Item(strFormat);
    return require(Platform::current()->pictures()).picture(format->iconRes(), PictureKind::Icon);
}

ObjectRef cWMLFormat::iconSmall(const Value& strFormat) {
    const std::shared_ptr<clWMLFormat> format = m_formats->Item(strFormat);
    return require(Platform::current()->pictures())
        .picture(format->iconResSmall(), PictureKind::Bitmap);
}

} // namespace tessaly
