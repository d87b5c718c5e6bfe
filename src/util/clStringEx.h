#pragma once

#include <array>
#include <string>

namespace tessaly {

/// Text and path tools. Comparisons are exact: upper and lower case differ.
class clStringEx {
public:
    /// Removes `strChar` from the right end of `StrSource` as often as it stands there, and returns
    /// what is left, which the caller sees in `StrSource` too. A `strChar` of several units never
    /// matches. Two empty texts fail with InvalidArgument.
    std::u16string trimCharacter(std::u16string& StrSource, const std::u16string& strChar) const;

    /// True if `strFN`, a bare file name without folder, holds no character that file names cannot
    /// hold. Otherwise the user is shown one message. The empty name passes.
    bool validFileName(const std::u16string& strFN) const;

    /// Cuts `strFN` behind its last `\` and returns it: the path with its trailing backslash. A
    /// name without a `\` fails with InvalidArgument and is left empty.
    std::u16string pathFromFileName(std::u16string& strFN) const;

private:
    std::array<char16_t, 9> m_InvalidChars{u'/', u'\\', u':', u'*', u'?', u'"', u'<', u'>', u'|'};
};

} // namespace tessaly
