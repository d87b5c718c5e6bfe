#include "apps/cli/Printer.h"

#include "platform/files/TextCodec.h"
#include "platform/terminal/TerminalText.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ostream>

namespace cli {

namespace {

constexpr std::size_t snippetUnits = 96;

const char* code(Style style) {
    switch (style) {
    case Style::Strong:
        return "\x1b[1m";
    case Style::Error:
        return "\x1b[1;31m";
    case Style::Place:
        return "\x1b[36m";
    case Style::Faint:
        return "\x1b[2m";
    case Style::Plain:
        break;
    }
    return "";
}

/// How many cells of the terminal `text` fills, roughly: wide scripts take two.
std::size_t cells(std::u16string_view text) {
    std::size_t count = 0;
    for (const char16_t unit : text) {
        const bool combining = unit >= 0x0300 && unit <= 0x036F;
        const bool wide =
            (unit >= 0x1100 && unit <= 0x115F) || (unit >= 0x2E80 && unit <= 0xA4CF) ||
            (unit >= 0xAC00 && unit <= 0xD7A3) || (unit >= 0xF900 && unit <= 0xFAFF) ||
            (unit >= 0xFF00 && unit <= 0xFF60) || (unit >= 0xD83C && unit <= 0xD83E);
        const std::size_t width = wide ? 2 : 1;
        count += combining || tessaly::isLowSurrogate(unit) ? 0 : width;
    }
    return count;
}

} // namespace

bool isSmartTerminal(int descriptor) {
    const char* const kind = std::getenv("TERM");
    const std::string_view name = kind == nullptr ? "" : kind;
    return isatty(descriptor) == 1 && !name.empty() && name != "dumb";
}

std::string utf8(std::u16string_view text) {
    return tessaly::encodeUtf8(text);
}

std::string shownPath(std::string_view path) {
    constexpr char digits[] = "0123456789abcdef";
    std::string shown;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n' || c == '\t' || c == '\r') {
            shown += c == '\n' ? "\\n" : c == '\t' ? "\\t" : "\\r";
        } else if (byte < 0x20 || byte == 0x7F) {
            shown.append("\\x") += digits[byte >> 4U];
            shown += digits[byte & 15U];
        } else {
            shown += c;
        }
    }
    return harmless(shown);
}

std::string harmless(std::string_view text) {
    std::u16string lines = tessaly::decodeText(text);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool lineEnd = lines[i] == u'\r' && i + 1 < lines.size() && lines[i + 1] == u'\n';
        if (!lineEnd) {
            lines[kept++] = lines[i];
        }
    }
    lines.resize(kept);
    return tessaly::terminalText(lines);
}

std::string Printer::styled(Style style, std::string_view text) const {
    std::string safe = harmless(text);
    if (!m_colours || style == Style::Plain) {
        return safe;
    }
    return code(style) + safe + "\x1b[0m";
}

void Printer::snippet(std::u16string_view text, std::size_t offset) const {
    const auto isLineEnd = [&](std::size_t at) { return text[at] == u'\n' || text[at] == u'\r'; };
    const std::size_t at = std::min(offset, text.size());
    std::size_t begin = at;
    while (begin > 0 && at - begin <= snippetUnits && !isLineEnd(begin - 1)) {
        --begin;
    }
    std::size_t end = at;
    while (end < text.size() && end - at <= snippetUnits && !isLineEnd(end)) {
        ++end;
    }
    std::size_t first = begin;
    if (end - begin > snippetUnits && at - begin > snippetUnits / 2) {
        first = at - snippetUnits / 2;
        first += tessaly::isLowSurrogate(text[first]) ? 1U : 0U;
    }
    const std::size_t last = std::min(end, first + snippetUnits);
    std::u16string shown(text.substr(first, last - first));
    std::replace(shown.begin(), shown.end(), u'\t', u' ');
    const std::u16string before = (first > begin ? u"…" : u"") + shown.substr(0, at - first);
    const std::u16string after = shown.substr(at - first) + (last < end ? u"…" : u"");
    m_out << "  " << harmless(utf8(before + after)) << '\n'
          << "  " << std::string(cells(before), ' ') << styled(Style::Error, "^") << '\n';
}

} // namespace cli
