#include "ravikit/convert/page/Carrier.h"

#include "ravikit/text/Scan.h"

#include <algorithm>
#include <array>

namespace ravikit {

namespace {

constexpr std::u16string_view letters =
    u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-.";

constexpr std::uint8_t noDigit = 0xFF;
constexpr char16_t none = 0xFFFF;

/// What is frequent in markup but not safe in HTML, and the rare sign that stands for it.
struct Swap {
    char16_t unit;
    char16_t letter;
};
constexpr std::array swaps{Swap{u' ', u'~'},   Swap{u'<', u'['},  Swap{u'>', u']'},
                           Swap{u'"', u'*'},   Swap{u'\n', u'^'}, Swap{u'=', u'|'},
                           Swap{u'\r', u'\\'}, Swap{u'\t', u'{'}, Swap{u'&', u'+'}};
constexpr std::u16string_view asTheyAre = u"/?;,#@$-.%_:()!'}";
constexpr char16_t runMark = u'`'; ///< around a run of units with three digits each

struct Tables {
    std::array<char16_t, 128> letterOf{}; ///< `none` if the unit has none
    std::array<char16_t, 128> unitOf{};
    std::array<std::uint8_t, 128> digitOf{};
};

constexpr Tables makeTables() {
    Tables tables;
    tables.letterOf.fill(none);
    tables.unitOf.fill(none);
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

enum class Way : std::uint8_t { ToLetters, ToUnits };

/// What stands for `unit`, or the unit that a letter stands for, or `none`.
constexpr char16_t counterpart(Way way, char16_t unit) {
    const auto& table = way == Way::ToLetters ? tables.letterOf : tables.unitOf;
    return unit < table.size() ? table[unit] : none;
}

#if defined(__SSE2__)
/// Writes the counterparts of sixteen units to `to` and gives the number of those before the
/// first that has none.
template <Way way>
std::ptrdiff_t exchangeMany(const char16_t* at, char16_t* to) {
    const scan::Bytes bytes = scan::narrowed(at);
    scan::Bytes others = bytes;
    scan::Bytes alone = scan::either(bytes, scan::equals(bytes, 0x7F)); // if the highest bit is set
    alone = scan::either(alone, scan::equals(bytes, runMark));
    for (const Swap& swap : swaps) {
        const bool there = way == Way::ToLetters;
        const scan::Bytes mine = scan::equals(bytes, there ? swap.unit : swap.letter);
        others = scan::differing(others, scan::both(mine, swap.unit ^ swap.letter));
        alone = scan::either(alone, scan::equals(bytes, there ? swap.letter : swap.unit));
    }
    scan::widen(others, to);
    alone = scan::either(alone, scan::upTo(way == Way::ToLetters ? others : bytes, 0x1F));
    const unsigned mask = scan::maskOf(alone);
    return mask == 0 ? scan::stride : __builtin_ctz(mask);
}
#endif

/// Writes the counterparts of the units from `at` on to `to`, up to the first that has none, where
/// it leaves both. It may write more than that, but not beyond as many as there are units.
template <Way way>
void exchange(const char16_t*& at, const char16_t* end, char16_t*& to) {
#if defined(__SSE2__)
    while (end - at >= scan::stride) {
        const std::ptrdiff_t count = exchangeMany<way>(at, to);
        at += count;
        to += count;
        if (count != scan::stride) {
            return;
        }
    }
#endif
    for (; at != end; ++at, ++to) {
        const char16_t other = counterpart(way, *at);
        if (other == none) {
            return;
        }
        *to = other;
    }
}

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

void appendCarried(std::u16string& page, std::u16string_view source) {
    std::array<char16_t, 4096> buffer; // the page need not grow for each unit
    const char16_t* at = source.data();
    const char16_t* const end = at + source.size();
    while (at != end) {
        char16_t* to = buffer.data();
        const auto room = [&] { return buffer.data() + buffer.size() - to; };
        while (at != end && room() >= 8) {
            exchange<Way::ToLetters>(at, at + std::min(end - at, room()), to);
            if (at == end || room() < 8 || counterpart(Way::ToLetters, *at) != none) {
                continue;
            }
            *to++ = runMark;
            for (; at != end && room() >= 4 && counterpart(Way::ToLetters, *at) == none; ++at) {
                putDigits(to, *at, 3);
                to += 3;
            }
            *to++ = runMark;
        }
        page.append(buffer.data(), static_cast<std::size_t>(to - buffer.data()));
    }
}

std::optional<std::u16string> carriedSource(std::u16string_view value) {
    std::u16string source;
    source.reserve(value.size());
    std::array<char16_t, 4096> buffer;
    const char16_t* at = value.data();
    const char16_t* const end = at + value.size();
    while (at != end) {
        char16_t* to = buffer.data();
        exchange<Way::ToUnits>(
            at, at + std::min(end - at, static_cast<std::ptrdiff_t>(buffer.size())), to);
        source.append(buffer.data(), static_cast<std::size_t>(to - buffer.data()));
        if (at == end || counterpart(Way::ToUnits, *at) != none) {
            continue;
        }
        if (*at++ != runMark) {
            return std::nullopt;
        }
        for (; at != end && *at != runMark; at += 3) {
            const auto unit = end - at < 3 ? std::nullopt : readDigits({at, 3});
            if (!unit || *unit > 0xFFFF) {
                return std::nullopt;
            }
            source += static_cast<char16_t>(*unit);
        }
        if (at == end) {
            return std::nullopt;
        }
        ++at;
    }
    return source;
}

std::size_t appendMark(std::u16string& page, std::uint64_t deck, std::uint32_t begin) {
    constexpr std::u16string_view attribute = u" data-mark=\"";
    static_assert(attribute.substr(1, markAttribute.size()) == markAttribute);
    constexpr std::size_t fixed = attribute.size() + Mark::deckLetters + Mark::digestLetters;
    std::array<char16_t, fixed + 7> mark{};
    std::copy(attribute.begin(), attribute.end(), mark.begin());
    putDigits(mark.data() + attribute.size(), deck, Mark::deckLetters);
    unsigned count = 1;
    while (count < 6 && begin >> (6 * count) != 0) {
        ++count;
    }
    putDigits(mark.data() + fixed, begin, count);
    mark[fixed + count] = u'"';
    const std::size_t place = page.size() + attribute.size() + Mark::deckLetters;
    page.append(mark.data(), fixed + count + 1);
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
