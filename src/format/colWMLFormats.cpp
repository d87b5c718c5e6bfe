#include "format/colWMLFormats.h"

namespace tessaly {

std::shared_ptr<clWMLFormat> colWMLFormats::Add(const std::u16string& Caption,
                                                const std::u16string& ToolTiptext,
                                                const Value& iconRes, const Value& iconResSmall,
                                                const std::u16string& sKey) {
    auto format = std::make_shared<clWMLFormat>();
    format->Caption(Caption);
    format->ToolTiptext(ToolTiptext);
    format->iconRes(iconRes);
    format->iconResSmall(iconResSmall);
    sKey.empty() ? m_Col.add(format) : m_Col.add(format, sKey);
    return format;
}

std::shared_ptr<clWMLFormat> colWMLFormats::Item(const Value& vntIndexKey) const {
    return m_Col.item(vntIndexKey);
}

std::int32_t colWMLFormats::Count() const {
    return m_Col.count();
}

void colWMLFormats::Remove(const Value& vntIndexKey) {
    m_Col.remove(vntIndexKey);
}

std::vector<std::shared_ptr<clWMLFormat>> colWMLFormats::NewEnum() const {
    return m_Col.enumerate();
}

} // namespace tessaly
