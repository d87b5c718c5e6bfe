#include "external/Platform.h"
#include "util/clStringEx.h"

namespace tessaly {

namespace {

constexpr std::u16string_view ellipsis = u"...";

/// 1 between the two units of one character, 0 elsewhere.
std::size_t splitUnits(std::u16string_view text, std::size_t at) {
    const bool isSplit = at > 0 && at < text.size() && (text[at - 1] & 0xFC00) == 0xD800 &&
                         (text[at] & 0xFC00) == 0xDC00;
    return isSplit ? 1 : 0;
}

/// The greatest number up to `most` that `fits`, or 0; what is less than one that fits fits too.
template <class Fits>
std::size_t greatest(std::size_t most, Fits&& fits) {
    std::size_t least = 0;
    while (least < most) {
        const std::size_t middle = most - (most - least) / 2;
        if (fits(middle)) {
            least = middle;
        } else {
            most = middle - 1;
        }
    }
    return least;
}

std::u16string shortened(std::u16string_view path, std::int32_t maxPixels, std::int32_t hdc) {
    path = path.substr(0, path.find(u'\0'));
    const auto platform = Platform::current();
    const auto isWithin = [&](const std::u16string& text) {
        return platform->textWidth(hdc, text) <= maxPixels;
    };
    if (isWithin(std::u16string(path))) {
        return std::u16string(path);
    }
    // A separator at the end belongs to the last component.
    const std::size_t separator = path.size() < 2 ? path.npos : path.rfind(u'\\', path.size() - 2);
    const std::u16string_view head = path.substr(0, separator == path.npos ? 0 : separator);
    const std::u16string_view last = path.substr(head.size());
    const auto joined = [&](std::size_t ofHead, std::size_t ofLast) {
        ofHead -= splitUnits(head, ofHead);
        ofLast -= splitUnits(last, last.size() - ofLast);
        std::u16string text(head.substr(0, ofHead));
        return text.append(ellipsis).append(last.substr(last.size() - ofLast));
    };
    const std::size_t ofLast =
        greatest(last.size(), [&](std::size_t length) { return isWithin(joined(0, length)); });
    const std::size_t most = ofLast == last.size() ? head.size() : 0;
    const std::size_t ofHead =
        greatest(most, [&](std::size_t length) { return isWithin(joined(length, ofLast)); });
    const std::u16string text = joined(ofHead, ofLast);
    return isWithin(text) ? text : std::u16string();
}

} // namespace

std::u16string clStringEx::CompactedPath(const std::u16string& sPath, std::int32_t lMaxPixels,
                                         std::int32_t hdc) const {
    return shortened(sPath, lMaxPixels, hdc);
}

std::u16string clStringEx::CompactedPathSh(const std::u16string& sPath, std::int32_t lMaxPixels,
                                           std::int32_t hdc) const {
    return shortened(sPath, lMaxPixels, hdc);
}

} // namespace tessaly
