// Holds the four tools for markup text against models that are as plain as can be, and looks
// whether they fail where they should and nowhere else.
//
//   fuzz_strings -max_len=200 CORPUS

#include "util/Failure.h"
#include "util/clStringEx.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace {

using tessaly::clStringEx;

/// What a tool gives; nothing where it fails as an invalid argument makes it fail.
template <class Tool>
std::optional<std::u16string> outcome(Tool&& tool) {
    try {
        return tool();
    } catch (const tessaly::Failure& failure) {
        if (failure.code() != tessaly::FailureCode::InvalidArgument) {
            throw;
        }
        return std::nullopt;
    }
}

void expect(bool holds, const char* what) {
    if (!holds) {
        std::cerr << what << "\n";
        std::abort();
    }
}

/// Positions count from 1, 0 is nowhere; a search looks at every place in turn.
using Position = std::int64_t;

bool standsAt(Position at, const std::u16string& text, const std::u16string& what) {
    return text.compare(static_cast<std::size_t>(at - 1), what.size(), what) == 0;
}
Position length(const std::u16string& text) {
    return static_cast<Position>(text.size());
}
Position first(Position from, const std::u16string& text, const std::u16string& what) {
    for (Position at = from; at <= length(text); ++at) {
        if (standsAt(at, text, what)) {
            return at;
        }
    }
    return 0;
}
Position last(Position upTo, const std::u16string& text, const std::u16string& what) {
    for (Position at = upTo; upTo <= length(text) && at > 0; --at) {
        const bool ends = at + length(what) - 1 <= upTo;
        if (ends && standsAt(at, text, what)) {
            return at;
        }
    }
    return 0;
}

std::vector<Position> all(Position from, const std::u16string& text, const std::u16string& what) {
    std::vector<Position> places;
    while ((from = first(from, text, what)) > 0) {
        places.push_back(from++);
    }
    return places;
}

/// The first opening delimiter pairs with the first closing one, the second with the second, and
/// so on; a pair that stands the wrong way round only moves the beginning of what is kept.
std::optional<std::u16string> filtered(std::u16string text, Position from,
                                       const std::u16string& open, const std::u16string& close) {
    if (first(from, text, open) == 1) {
        text.erase(0, static_cast<std::size_t>(first(from, text, close)));
    }
    const std::vector<Position> opens = all(from, text, open);
    const std::vector<Position> closes = all(from, text, close);
    std::u16string kept;
    for (std::size_t i = 0; i < std::min(opens.size(), closes.size()); ++i) {
        if (closes[i] > opens[i]) {
            if (opens[i] < from) {
                return std::nullopt;
            }
            kept += text.substr(static_cast<std::size_t>(from - 1),
                                static_cast<std::size_t>(opens[i] - from));
        }
        from = closes[i] + 1;
    }
    return from > length(text) ? kept : kept + text.substr(static_cast<std::size_t>(from - 1));
}

std::u16string withoutControls(const std::u16string& text) {
    std::u16string out;
    std::copy_if(text.begin(), text.end(), std::back_inserter(out),
                 [](char16_t unit) { return unit >= u' '; });
    const auto isSecondSpace = [](char16_t a, char16_t b) { return a == u' ' && b == u' '; };
    out.erase(std::unique(out.begin(), out.end(), isSecondSpace), out.end());
    return out.starts_with(u' ') ? out.substr(1) : out;
}

/// Does to a text what the description of insertQuotes says, word by word.
std::optional<std::u16string> quoted(std::u16string text) {
    Position pos = first(1, text, u"=");
    while (pos > 0) {
        const auto behind = static_cast<std::size_t>(pos);
        const bool inside = std::count(text.begin(), text.begin() + pos, u'"') % 2 != 0;
        if (!inside && text.substr(behind, 1) != u"\"") {
            text.insert(behind, 1, u'"');
            const Position space = first(pos + 1, text, u" ");
            const Position bracket = first(pos + 1, text, u">");
            const Position end = space && bracket ? std::min(space, bracket) : space + bracket;
            if (end == 0) {
                return std::nullopt;
            }
            text.insert(static_cast<std::size_t>(end - 1), 1, u'"');
            pos = end;
        }
        pos = first(pos + 1, text, u"=");
    }
    return text;
}

bool between(const std::u16string& text, Position at, const std::u16string& open,
             const std::u16string& close) {
    const Position o1 = last(at, text, open);
    const Position c1 = last(at, text, close);
    const Position c2 = first(std::max<Position>(at, 1), text, close);
    const Position o2 = first(std::max<Position>(at, 1), text, open);
    return (o1 > 0 && o1 != at && (c1 == 0 || o1 > c1)) ||
           (c2 != at && (c2 == 0 || o2 == 0 || o2 > c2));
}

/// Letters from a small alphabet, so that delimiters meet, and now and then any unit.
std::u16string textFrom(const std::uint8_t*& data, const std::uint8_t* end, std::size_t most) {
    static constexpr char16_t alphabet[] = u"<>=\" ab\r\n\t-!\x01\xD83D";
    constexpr std::size_t letters = std::size(alphabet) - 1;
    std::u16string text;
    while (data != end && text.size() < most) {
        const std::uint8_t byte = *data++;
        text.push_back(byte < 0xF0 ? alphabet[byte % letters] : static_cast<char16_t>(byte));
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) {
        return -1;
    }
    const std::uint8_t* const end = data + size;
    const std::uint8_t shape = *data++;
    std::int32_t position = static_cast<std::int8_t>(*data++);
    const std::u16string open = textFrom(data, end, shape % 4);
    const std::u16string close = textFrom(data, end, shape / 4 % 4);
    const std::u16string text = textFrom(data, end, size);
    const clStringEx tools;

    const std::u16string clean = tools.removeControlCharacters(text);
    expect(clean == withoutControls(text), "removeControlCharacters");
    expect(tools.removeControlCharacters(clean) == clean, "removeControlCharacters, twice");

    expect(outcome([&] { return tools.insertQuotes(text); }) == quoted(text), "insertQuotes");

    const Position asked = position == 0 ? 1 : position;
    const bool isBetween = tools.bBetweenDelimeters(text, position, open, close);
    expect(position == asked && isBetween == between(text, asked, open, close),
           "bBetweenDelimeters");

    const tessaly::Value tagged = close;
    const auto kept =
        outcome([&] { return tools.filterDelimeterPair(text, open, tagged, position); });
    expect(kept == filtered(text, std::max<Position>(position, 1), open, close),
           "filterDelimeterPair");
    return 0;
}
