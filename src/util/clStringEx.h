#pragma once

#include "util/Value.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tessaly {

/// Text and path tools. Comparisons are exact: upper and lower case differ. Positions are 1-based,
/// 0 is no position.
class clStringEx {
public:
    /// Removes `strChar` from the right end of `StrSource` as often as it stands there, and returns
    /// what is left, which the caller sees in `StrSource` too. A `strChar` of several units never
    /// matches. Two empty texts fail with InvalidArgument.
    std::u16string trimCharacter(std::u16string& StrSource, const std::u16string& strChar) const;

    /// True if `strFN`, a bare file name without folder, holds no character that file names cannot
    /// hold. Otherwise the user is shown one message. The empty name passes.
    bool validFileName(const std::u16string& strFN) const;

    /// Cuts `strFN` after its last `\` and returns it: the path with its trailing backslash. A
    /// name without a `\` fails with InvalidArgument and is left empty.
    std::u16string pathFromFileName(std::u16string& strFN) const;

    /// `sPath` as it is, if the device context `hdc` shows it in at most `lMaxPixels`; otherwise
    /// shortened to fit, with one ellipsis in its middle. What stands after the last `\` is
    /// shortened, from its left, only when all that is before it is gone. Where not even the
    /// ellipsis fits, the empty string. A NUL ends the path.
    std::u16string CompactedPath(const std::u16string& sPath, std::int32_t lMaxPixels,
                                 std::int32_t hdc) const;

    /// The same as CompactedPath.
    std::u16string CompactedPathSh(const std::u16string& sPath, std::int32_t lMaxPixels,
                                   std::int32_t hdc) const;

    /// `StrSource` from position `lPos` on, without the stretches from an opening `strDel1` to the
    /// next closing `strDel2`, both included; of a longer `strDel2` all after its first character
    /// stays. A text that begins with `strDel1` is taken as beginning inside a pair. A `lPos` below
    /// 1 counts as 1. Nested pairs fail with InvalidArgument, a `strDel2` that is no text with
    /// TypeMismatch.
    std::u16string filterDelimeterPair(const std::u16string& StrSource,
                                       const std::u16string& strDel1, const Value& strDel2,
                                       std::int32_t lPos = 1) const;

    /// Whether position `lSelPos` of `StrSource` counts as lying inside a pair: the delimiter ahead
    /// is an opening one, or the one after is no opening one. A text with no closing delimiter at
    /// or after the position counts as inside. A `lSelPos` of 0 becomes 1 in the caller too.
    bool bBetweenDelimeters(const std::u16string& StrSource, std::int32_t& lSelPos,
                            const std::u16string& strDel1, const std::u16string& strDel2) const;

    /// `StrSource` without characters below 32 and without leading spaces, each run of spaces as
    /// one, also where control characters interrupt it. A tab is a control character.
    std::u16string removeControlCharacters(const std::u16string& StrSource) const;

    /// `StrSource` with quotes around what stands after a `=` without them, up to the next space
    /// or `>`. An `=` counts wherever it stands, but for between quotes. A value without an end
    /// fails with InvalidArgument.
    std::u16string insertQuotes(const std::u16string& StrSource) const;

private:
    /// True if an odd number of quotes stands at or before position `lPos` of `strSource`.
    static bool bBetweenQuotes(std::size_t lPos, std::u16string_view strSource);

    std::array<char16_t, 9> m_InvalidChars{u'/', u'\\', u':', u'*', u'?', u'"', u'<', u'>', u'|'};
};

} // namespace tessaly
