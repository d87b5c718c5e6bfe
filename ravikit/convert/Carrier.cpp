#include "ravikit/convert/Carrier.h"

#include <array>

namespace ravikit {

namespace {

constexpr std::u16string_view letters =
    u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-.";

constexpr std::uint8_t noDigit = 0xFF;

/// What is frequent in markup but not safe in HTML, and the letter that stands for it.
struct Swap {
    char16_t unit;
    char16_t letter;
};
constexpr std::array swaps{Swap{u' ', u'_'},  Swap{u'<', u'('},  Swap{u'>', u')'},
                           Swap{u'"', u'*'},  Swap{u'\n', u'!'}, Swap{u'=', u':'},
                           Swap{u'\r', u'^'}, Swap{u'\t', u'|'}, Swap{u'&', u'+'}};
constexpr std::u16string_view asTheyAre = u"/?;,#@$-.%{}[]";
constexpr char16_t runMark = u'~'; ///< around a run of units with three digits each

struct Tables {
    std::array<char16_t, 128> letterOf{}; ///< 0 if the unit has none
    std::array<char16_t, 128> unitOf{};
    std::array<std::uint8_t, 128> digitOf{};
};

constexpr Tables makeTables() {
    Tables tables;
    tables.digitOf.fill(noDigit);
    for (std::size_t i = 0; i < letters.size(); ++i) {
        tables.digitOf[letters[i]] = static_cast<std::uint8_t>(i);
        tables.letterOf[letters[i]] = tables.unitOf[letters[i]] = letters[i];
    }
    for (const char16_t c : asTheyAre) {
        tables.letterOf[c] = tables.unitOf[c] = c;
    }
    for (const Swap& swap : swaps) {
        tables.letterOf[swap.unit] = swap.letter;
        tables.unitOf[swap.letter] = swap.unit;
    }
    return tables;
}
constexpr Tables tables = makeTables();

void putDigits(char16_t* at, std::uint64_t number, unsigned count) {
    for (unsigned i = count; i-- > 0; number >>= 6) {
        at[i] = letters[number & 63];
    }
}

/// The number that `digits` write, or nothing.
std::optional<std::uint64_t> readDigits(std::u16string_view digits) {
    std::uint64_t number = 0;
    for (const char16_t c : digits) {
        if (c >= 128 || tables.digitOf[c] == noDigit) {
            return std::nullopt;
        }
        number = number << 6 | tables.digitOf[c];
    }
    return number;
}

} // namespace

std::uint64_t hashOf(std::u16string_view text) {
    std::uint64_t hash = text.size() * 0x9E3779B97F4A7C15U;
    std::size_t at = 0;
    const auto add = [&hash](std::uint64_t word) {
        hash = (hash ^ word) * 0xC2B2AE3D27D4EB4FU;
        hash ^= hash >> 29;
    };
    for (; at + 4 <= text.size(); at += 4) {
        add(std::uint64_t{text[at]} | std::uint64_t{text[at + 1]} << 16 |
            std::uint64_t{text[at + 2]} << 32 | std::uint64_t{text[at + 3]} << 48);
    }
    for (; at < text.size(); ++at) {
        add(text[at]);
    }
    return (hash ^ hash >> 32) * 0x9E3779B97F4A7C15U;
}

void appendCarried(std::u16string& page, std::u16string_view source) {
    const std::size_t begin = page.size();
    page.resize(begin + source.size() + source.size() / 8 + 64);
    std::size_t out = begin;
    const auto room = [&](std::size_t units) {
        if (page.size() - out < units) {
            page.resize(page.size() + page.size() / 2 + units);
        }
    };
    for (std::size_t at = 0; at < source.size();) {
        room(source.size() - at + 1);
        char16_t* to = page.data() + out;
        for (; at < source.size(); ++at, ++to) {
            const char16_t letter = source[at] < 128 ? tables.letterOf[source[at]] : u'\0';
            if (letter == 0) {
                break;
            }
            *to = letter;
        }
        out = static_cast<std::size_t>(to - page.data());
        if (at == source.size()) {
            break;
        }
        page[out++] = runMark;
        for (; at < source.size() && (source[at] >= 128 || tables.letterOf[source[at]] == 0);
             ++at, out += 3) {
            room(4);
            putDigits(page.data() + out, source[at], 3);
        }
        room(1);
        page[out++] = runMark;
    }
    page.resize(out);
}

std::optional<std::u16string> carriedSource(std::u16string_view value) {
    std::u16string source(value.size(), u'\0');
    std::size_t out = 0;
    for (std::size_t at = 0; at < value.size(); ++at) {
        const char16_t c = value[at];
        if (c < 128 && tables.unitOf[c] != 0) {
            source[out++] = tables.unitOf[c];
            continue;
        }
        if (c != runMark) {
            return std::nullopt;
        }
        for (++at; at < value.size() && value[at] != runMark; at += 3) {
            const auto unit = readDigits(value.substr(at, 3));
            if (!unit || *unit > 0xFFFF || at + 3 > value.size()) {
                return std::nullopt;
            }
            source[out++] = static_cast<char16_t>(*unit);
        }
        if (at >= value.size()) {
            return std::nullopt;
        }
    }
    source.resize(out);
    return source;
}

std::size_t appendMark(std::u16string& page, std::uint64_t deck, std::uint32_t begin) {
    constexpr unsigned fixed = Mark::deckLetters + Mark::digestLetters;
    std::array<char16_t, fixed + 6> mark{};
    putDigits(mark.data(), deck, Mark::deckLetters);
    unsigned count = 1;
    while (count < 6 && begin >> (6 * count) != 0) {
        ++count;
    }
    putDigits(mark.data() + fixed, begin, count);
    const std::size_t place = page.size() + Mark::deckLetters;
    page.append(mark.data(), fixed + count);
    return place;
}

void setDigest(std::u16string& page, std::size_t place, std::uint64_t digest) {
    putDigits(page.data() + place, digest, Mark::digestLetters);
}

std::optional<Mark> readMark(std::u16string_view value) {
    constexpr std::size_t fixed = Mark::deckLetters + Mark::digestLetters;
    if (value.size() <= fixed || value.size() > fixed + 6) {
        return std::nullopt;
    }
    const auto deck = readDigits(value.substr(0, Mark::deckLetters));
    const auto digest = readDigits(value.substr(Mark::deckLetters, Mark::digestLetters));
    const auto begin = readDigits(value.substr(fixed));
    if (!deck || !digest || !begin || *begin > 0xFFFFFFFF) {
        return std::nullopt;
    }
    return Mark{*deck, *digest, static_cast<std::uint32_t>(*begin)};
}

} // namespace ravikit
