#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ravikit {

/// A place in a text as an author counts: both from 1, the column in UTF-16 units.
struct LineColumn {
    std::uint32_t line = 1;
    std::uint32_t column = 1;
};

/// The lines of a text. A line ends at CR LF, at LF and at a CR without an LF, so that CR CR LF is
/// two line ends. Built in one pass; an answer costs the same wherever in the text and however
/// long the lines are. The text must outlive it.
class Lines {
public:
    explicit Lines(std::u16string_view text);

    /// Of the unit at `offset`, from 0; an offset after the text counts as the text's end. The
    /// units of a line end still belong to the line that they end.
    LineColumn at(std::uint32_t offset) const;

    /// The whole line that holds `offset`, without its line end.
    std::u16string_view lineAt(std::uint32_t offset) const;

private:
    /// The line that a block's first unit stands in.
    struct Start {
        std::uint32_t line;
        std::uint32_t begin;
    };
    static constexpr std::uint32_t blockUnits = 1024;

    Start startOf(std::uint32_t offset) const;
    void advance(Start& start, std::uint32_t from, std::uint32_t to) const;

    std::u16string_view m_text;
    std::vector<Start> m_blocks;
};

} // namespace ravikit
