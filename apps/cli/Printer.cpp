#include "apps/cli/Printer.h"

#include "platform/TerminalText.h"
#include "platform/TextCodec.h"

#include <algorithm>
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

std::string utf8(std::u16string_view text) {
    return tessaly::encodeUtf8(text);
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

void Printer::snippet(const std::u16string& line, std::size_t column) const {
    std::u16string shown = line;
    std::replace(shown.begin(), shown.end(), u'\t', u' ');
    const std::size_t at = std::min(column > 0 ? column - 1 : 0, shown.size());
    std::size_t first =
        at > snippetUnits / 2 && shown.size() > snippetUnits ? at - snippetUnits / 2 : 0;
    if (first < shown.size() && tessaly::isLowSurrogate(shown[first])) {
        ++first;
    }
    const std::u16string before = (first > 0 ? u"…" : u"") + shown.substr(first, at - first);
    const std::u16string behind = shown.substr(at, first + snippetUnits - at);
    const bool cut = first + snippetUnits < shown.size();
    m_out << "  " << harmless(utf8(before + behind)) << (cut ? "…" : "") << '\n'
          << "  " << std::string(cells(before), ' ') << styled(Style::Error, "^") << '\n';
}

} // namespace cli
