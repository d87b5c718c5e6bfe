#include "ravikit/convert/page/Digest.h"

#include "ravikit/text/Chars.h"
#include "ravikit/text/Scan.h"

#include <algorithm>

namespace ravikit {

namespace {

/// Up to where a text counts as it stands: before a blank that is more than one space or that may
/// be the last. It may stop at something else that is rare.
const char16_t* plainEnd(const char16_t* at, const char16_t* end) {
#if defined(__SSE2__)
    for (; end - at > scan::stride; at += scan::stride) {
        const scan::Bytes units = scan::narrowed(at);
        const scan::Bytes next = scan::upTo(scan::narrowed(at + 1), u' ');
        const unsigned doubled = scan::maskOf(scan::equals(units, u' ')) & scan::maskOf(next);
        if (const unsigned mask = doubled | scan::maskOf(scan::Control()(units)); mask != 0) {
            return at + __builtin_ctz(mask);
        }
    }
#endif
    while (at != end && !scan::needsLook(*at) && (*at != u' ' || (at + 1 != end && at[1] > u' '))) {
        ++at;
    }
    return at;
}

} // namespace

void Digest::text(std::u16string_view text) {
    if (m_frames.empty()) {
        return;
    }
    if (m_frames.back().pre) {
        exactText(m_frames.back(), text);
        return;
    }
    Frame now = m_frames.back(); // in registers
    const char16_t* const end = text.data() + text.size();
    for (const char16_t* at = text.data(); at != end;) {
        if (*at <= u' ' && isBlank(*at)) {
            now.space = !now.edge;
            ++at;
            continue;
        }
        if (now.space) {
            now.unit(u' ');
            now.space = false;
        }
        now.edge = false;
        const char16_t* const behind = std::max(at + 1, plainEnd(at, end));
        now.units(at, behind);
        at = behind;
    }
    m_frames.back() = now;
}

void Digest::exactText(Frame& frame, std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool crLf = text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n';
        const char16_t c = text[i] == u'\r' ? u'\n' : text[i];
        if (!crLf && !(frame.edge && c == u'\n')) {
            frame.edge = false;
            frame.unit(c);
        }
    }
}

} // namespace ravikit
