#include "util/clStringEx.h"

#include "external/Platform.h"
#include "util/Failure.h"

#include <algorithm>

namespace tessaly {

std::u16string clStringEx::trimCharacter(std::u16string& StrSource,
                                         const std::u16string& strChar) const {
    if (StrSource.empty() && strChar.empty()) {
        throw Failure(FailureCode::InvalidArgument);
    }
    if (strChar.size() == 1) {
        while (StrSource.ends_with(strChar)) {
            StrSource.pop_back();
        }
    }
    return StrSource;
}

bool clStringEx::validFileName(const std::u16string& strFN) const {
    const auto standsInName = [&](char16_t invalid) { return strFN.find(invalid) != strFN.npos; };
    if (std::none_of(m_InvalidChars.begin(), m_InvalidChars.end(), standsInName)) {
        return true;
    }
    Platform::current()->MsgBox(u"File names cannot contain the following characters:\n\n"
                                u"         \\/:*?\"<>|",
                                MsgBoxFlags::Critical, defaultCaption);
    return false;
}

std::u16string clStringEx::pathFromFileName(std::u16string& strFN) const {
    while (!strFN.ends_with(u'\\')) {
        if (strFN.empty()) {
            throw Failure(FailureCode::InvalidArgument);
        }
        strFN.pop_back();
    }
    return strFN;
}

} // namespace tessaly
