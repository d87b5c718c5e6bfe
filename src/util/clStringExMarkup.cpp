#include "util/Failure.h"
#include "util/clStringEx.h"

#include <algorithm>

namespace tessaly {

namespace {

/// The position of the first `what` at or after position `start`, or 0. After the end even the
/// empty text is not found.
std::size_t firstFrom(std::size_t start, std::u16string_view text, std::u16string_view what) {
    return start > text.size() ? 0 : text.find(what, start - 1) + 1;
}

/// The position of the last `what` that ends at or before position `end`, or 0, also where `end`
/// is past the end of the text.
std::size_t lastUpTo(std::size_t end, std::u16string_view text, std::u16string_view what) {
    if (end < what.size() || end < 1 || end > text.size()) {
        return 0;
    }
    return text.rfind(what, end - std::max<std::size_t>(what.size(), 1)) + 1;
}

} // namespace

std::u16string clStringEx::filterDelimeterPair(const std::u16string& StrSource,
                                               const std::u16string& strDel1, const Value& strDel2,
                                               std::int32_t lPos) const {
    const auto* closing = std::get_if<std::u16string>(&strDel2);
    if (!closing) {
        throw Failure(FailureCode::TypeMismatch);
    }
    std::u16string_view text = StrSource;
    std::u16string kept;
    auto iClose = static_cast<std::size_t>(std::max(lPos, 1));
    std::size_t iOpen = iClose;
    std::size_t c = firstFrom(iClose, text, *closing);
    std::size_t o = firstFrom(iOpen, text, strDel1);
    if (o == 1) { // the text begins inside a pair
        text.remove_prefix(c);
        c = firstFrom(iClose, text, *closing);
        o = firstFrom(iOpen, text, strDel1);
    }
    while (c > 0 && o > 0) {
        if (c > o) {
            if (o < iClose) { // a pair within the pair before
                throw Failure(FailureCode::InvalidArgument);
            }
            kept += text.substr(iClose - 1, o - iClose);
        }
        iClose = c + 1;
        iOpen = o + 1;
        c = firstFrom(iClose, text, *closing);
        o = firstFrom(iOpen, text, strDel1);
    }
    if (iClose <= text.size()) {
        kept += text.substr(iClose - 1);
    }
    return kept;
}

bool clStringEx::bBetweenDelimeters(const std::u16string& StrSource, std::int32_t& lSelPos,
                                    const std::u16string& strDel1,
                                    const std::u16string& strDel2) const {
    if (lSelPos == 0) {
        lSelPos = 1;
    }
    // At its begin nothing has been passed, and all is to come.
    const std::size_t position = lSelPos < 0 ? 0 : static_cast<std::size_t>(lSelPos);
    const std::size_t o1 = lastUpTo(position, StrSource, strDel1);
    const std::size_t c1 = lastUpTo(position, StrSource, strDel2);
    const std::size_t start = std::max<std::size_t>(position, 1);
    const std::size_t c2 = firstFrom(start, StrSource, strDel2);
    const std::size_t o2 = firstFrom(start, StrSource, strDel1);
    const bool backward = o1 > 0 && o1 != position && (c1 == 0 || o1 > c1);
    const bool forward = c2 == 0 || (c2 != position && (o2 == 0 || o2 > c2));
    return backward || forward;
}

std::u16string clStringEx::removeControlCharacters(const std::u16string& StrSource) const {
    std::u16string taken;
    bool isBehindSpace = false;
    for (const char16_t unit : StrSource) {
        if (unit < u' ' || (unit == u' ' && isBehindSpace)) {
            continue;
        }
        taken.push_back(unit);
        isBehindSpace = unit == u' ';
    }
    if (taken.starts_with(u' ')) {
        taken.erase(0, 1);
    }
    return taken;
}

std::u16string clStringEx::insertQuotes(const std::u16string& StrSource) const {
    const std::u16string_view source = StrSource;
    std::u16string result;
    bool isBetweenQuotes = false;
    std::size_t from = 0;
    // Moves what lies before `end` to the result and counts its quotes, each once.
    const auto take = [&](std::size_t end) {
        const std::u16string_view piece = source.substr(from, end - from);
        isBetweenQuotes = isBetweenQuotes != bBetweenQuotes(piece.size(), piece);
        result += piece;
        from = end;
    };
    for (std::size_t pos = source.find(u'='); pos != source.npos;) {
        std::size_t behind = pos + 1;
        take(behind);
        if (!isBetweenQuotes && !source.substr(behind).starts_with(u'"')) {
            result += u'"';
            behind = source.find_first_of(u" >", behind);
            if (behind == source.npos) {
                throw Failure(FailureCode::InvalidArgument);
            }
            take(behind);
            result += u'"';
        }
        pos = source.find(u'=', behind);
    }
    take(source.size());
    return result;
}

bool clStringEx::bBetweenQuotes(std::size_t lPos, std::u16string_view strSource) {
    const std::u16string_view ahead = strSource.substr(0, lPos);
    return std::count(ahead.begin(), ahead.end(), u'"') % 2 != 0;
}

} // namespace tessaly
