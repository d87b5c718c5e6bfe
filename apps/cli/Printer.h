#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace cli {

enum class Style { Plain, Strong, Error, Place, Faint };

/// Text for the person in front of the terminal.
class Printer {
public:
    /// `out` must outlive the printer. `rich` adds colours and the source line under an error.
    Printer(std::ostream& out, bool rich, bool colours)
        : m_out(out)
        , m_rich(rich)
        , m_colours(colours) {}

    bool rich() const { return m_rich; }
    std::ostream& out() const { return m_out; }

    /// `text`, styled if colours are on, with everything that a terminal would act on made
    /// harmless: a deck must not be able to write escape sequences.
    std::string styled(Style style, std::string_view text) const;

    /// The source line around the unit at `offset` of `text`, with a caret below that unit. A long
    /// line is cut around the caret, and costs no more than what is shown.
    void snippet(std::u16string_view text, std::size_t offset) const;

private:
    std::ostream& m_out;
    bool m_rich;
    bool m_colours;
};

/// Whether `descriptor` is a terminal that obeys control sequences, by what `TERM` says.
bool isSmartTerminal(int descriptor);

/// UTF-8 for printing.
std::string utf8(std::u16string_view text);

/// A path on one line, fit for printing: control characters are written as `\n` or `\x1b`.
std::string shownPath(std::string_view path);

/// `text` (UTF-8) with control characters, save the line feed and the tab, shown as U+FFFD, and a
/// line end of CR LF as a line feed.
std::string harmless(std::string_view text);

} // namespace cli
