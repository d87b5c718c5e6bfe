#include "ravikit/convert/TextDiff.h"

#include "ravikit/convert/Gap.h"
#include "ravikit/text/Chars.h"

#include <algorithm>
#include <cstdint>
#include <map>

namespace ravikit {

namespace {

/// A word, or one unit that belongs to none.
struct Token {
    std::size_t begin = 0;
    std::u32string_view text;

    std::size_t end() const { return begin + text.size(); }
    bool operator==(const Token& other) const { return text == other.text; }
};
using Tokens = std::vector<Token>;

Tokens tokensOf(std::u32string_view text) {
    Tokens tokens;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        while (isWordUnit(text[at]) && end < text.size() && isWordUnit(text[end])) {
            ++end;
        }
        tokens.push_back({at, text.substr(at, end - at)});
        at = end;
    }
    return tokens;
}

/// Tokens [begin, end) of both texts.
struct Region {
    std::size_t before = 0;
    std::size_t beforeEnd = 0;
    std::size_t after = 0;
    std::size_t afterEnd = 0;

    bool isEmpty() const { return before == beforeEnd || after == afterEnd; }
};

/// A token that stands in both.
struct Pair {
    std::size_t before = 0;
    std::size_t after = 0;
};

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

/// The pairs (row, column), each in a later row and column than the one before, with the greatest
/// sum of weights; those of weight 0 are none. It costs rows times columns.
template <class WeightOf>
std::vector<Pair> heaviestPairs(std::size_t rows, std::size_t columns, const WeightOf& weightOf) {
    std::vector<std::uint32_t> best((rows + 1) * (columns + 1));
    const auto cell = [&](std::size_t row, std::size_t column) -> std::uint32_t& {
        return best[row * (columns + 1) + column];
    };
    const auto with = [&](std::size_t row, std::size_t column) -> std::uint32_t {
        const std::uint32_t weight = weightOf(row, column);
        return weight == 0 ? 0 : weight + cell(row + 1, column + 1);
    };
    for (std::size_t row = rows; row-- > 0;) {
        for (std::size_t column = columns; column-- > 0;) {
            cell(row, column) =
                std::max({cell(row + 1, column), cell(row, column + 1), with(row, column)});
        }
    }
    std::vector<Pair> pairs;
    for (std::size_t row = 0, column = 0; row < rows && column < columns;) {
        if (with(row, column) == cell(row, column) && cell(row, column) != 0) {
            pairs.push_back({row++, column++});
        } else if (cell(row, column) == cell(row + 1, column)) {
            ++row;
        } else {
            ++column;
        }
    }
    return pairs;
}

class Diff {
public:
    Diff(std::u32string_view before, std::u32string_view after)
        : m_before(tokensOf(before))
        , m_after(tokensOf(after)) {}

    std::vector<SharedRun> run() {
        compare({0, m_before.size(), 0, m_after.size()}, 0);
        return std::move(m_runs);
    }

private:
    /// Finds what the region shares: at its ends, then between, at tokens that occur but once.
    void compare(Region region, unsigned depth) {
        while (!region.isEmpty() && m_before[region.before] == m_after[region.after]) {
            share(region.before++, region.after++);
        }
        std::size_t atEnd = 0;
        while (!region.isEmpty() &&
               m_before[region.beforeEnd - 1] == m_after[region.afterEnd - 1]) {
            --region.beforeEnd;
            --region.afterEnd;
            ++atEnd;
        }
        if (!region.isEmpty()) {
            compareInside(region, depth);
        }
        for (std::size_t i = 0; i < atEnd; ++i) {
            share(region.beforeEnd + i, region.afterEnd + i);
        }
    }

    void compareInside(const Region& region, unsigned depth) {
        constexpr unsigned deepest = 16; // texts that were made to be split again and again
        const bool isLarge = !isSmall(region);
        const std::vector<Pair> pairs = !isLarge          ? mostInCommon(region)
                                        : depth < deepest ? uniqueIn(region)
                                                          : std::vector<Pair>();
        const auto compareBetween = [&](const Region& between) {
            isLarge && !pairs.empty() ? compare(between, depth + 1) : compareWords(between);
        };
        Region between{region.before, 0, region.after, 0};
        for (const Pair& pair : pairs) {
            between.beforeEnd = pair.before;
            between.afterEnd = pair.after;
            compareBetween(between);
            share(pair.before, pair.after);
            between.before = pair.before + 1;
            between.after = pair.after + 1;
        }
        between.beforeEnd = region.beforeEnd;
        between.afterEnd = region.afterEnd;
        compareBetween(between);
    }

    static bool isSmall(const Region& region) {
        constexpr std::size_t mostCells = 1U << 14U;
        return (region.beforeEnd - region.before + 1) * (region.afterEnd - region.after + 1) <=
               mostCells;
    }

    /// The longest text that both have in common, by its tokens: words count by their letters, so
    /// that no blank is kept at the cost of a word.
    std::vector<Pair> mostInCommon(const Region& region) const {
        const auto weightOf = [&](std::size_t row, std::size_t column) -> std::uint32_t {
            const Token& token = m_before[region.before + row];
            const bool isWord = isWordUnit(token.text[0]);
            const auto weight = static_cast<std::uint32_t>(isWord ? 2 + token.text.size() : 1);
            return token == m_after[region.after + column] ? weight : 0;
        };
        std::vector<Pair> pairs = heaviestPairs(region.beforeEnd - region.before,
                                                region.afterEnd - region.after, weightOf);
        for (Pair& pair : pairs) {
            pair.before += region.before;
            pair.after += region.after;
        }
        return pairs;
    }

    /// The tokens that each text has exactly once in the region, as many as stand in one order.
    std::vector<Pair> uniqueIn(const Region& region) const {
        struct Seen {
            std::size_t inBefore = 0;
            std::size_t inAfter = 0;
            std::size_t place = 0;
        };
        std::map<std::u32string_view, Seen> seen;
        for (std::size_t i = region.before; i < region.beforeEnd; ++i) {
            Seen& one = seen[m_before[i].text];
            ++one.inBefore;
            one.place = i;
        }
        for (std::size_t i = region.after; i < region.afterEnd; ++i) {
            ++seen[m_after[i].text].inAfter;
        }
        std::vector<Pair> pairs;
        for (std::size_t i = region.after; i < region.afterEnd; ++i) {
            const Seen& one = seen[m_after[i].text];
            if (one.inBefore == 1 && one.inAfter == 1) {
                pairs.push_back({one.place, i});
            }
        }
        return longestInOrder(pairs);
    }

    /// Of `pairs`, in the order of the second text, the most that are in the order of the first
    /// too.
    static std::vector<Pair> longestInOrder(const std::vector<Pair>& pairs) {
        constexpr auto none = static_cast<std::size_t>(-1);
        std::vector<std::size_t> ends; // the last of the best chain of each length
        std::vector<std::size_t> previous(pairs.size(), none);
        for (std::size_t i = 0; i < pairs.size(); ++i) {
            const auto at = std::lower_bound(
                ends.begin(), ends.end(), pairs[i].before,
                [&](std::size_t end, std::size_t place) { return pairs[end].before < place; });
            previous[i] = at == ends.begin() ? none : *(at - 1);
            if (at == ends.end()) {
                ends.push_back(i);
            } else {
                *at = i;
            }
        }
        std::vector<Pair> chain;
        for (std::size_t i = ends.empty() ? none : ends.back(); i != none; i = previous[i]) {
            chain.push_back(pairs[i]);
        }
        std::reverse(chain.begin(), chain.end());
        return chain;
    }

    /// What is left is other text. Where it is as many words as before, each is one retyped; else
    /// the first and the last may be.
    void compareWords(const Region& region) {
        if (region.isEmpty()) {
            return;
        }
        const std::size_t count = region.beforeEnd - region.before;
        const bool isWordForWord = count == region.afterEnd - region.after;
        for (std::size_t i = 0; isWordForWord && i < count; ++i) {
            compareLetters(m_before[region.before + i], m_after[region.after + i]);
        }
        if (!isWordForWord) {
            compareEnds(region);
        }
    }

    /// The letters that a word has kept, if they are most of it.
    void compareLetters(const Token& before, const Token& after) {
        constexpr std::size_t longest = 64;
        const std::size_t most = std::max(before.text.size(), after.text.size());
        std::vector<Pair> pairs;
        if (most <= longest) {
            pairs = heaviestPairs(before.text.size(), after.text.size(),
                                  [&](std::size_t row, std::size_t column) {
                                      return before.text[row] == after.text[column] ? 1U : 0U;
                                  });
        }
        if (pairs.size() * 2 < before.text.size()) {
            addEnds(before, before, after, after);
            return;
        }
        for (std::size_t i = 0; i < pairs.size(); ++i) {
            const char32_t unit = before.text[pairs[i].before];
            const auto isNext = [&](std::size_t a, std::size_t b) {
                return a < pairs.size() && b < pairs.size() &&
                       pairs[b].before == pairs[a].before + 1 &&
                       pairs[b].after == pairs[a].after + 1;
            };
            // No half of a character is kept.
            const bool isHalf = (isHighSurrogate(unit) && !isNext(i, i + 1)) ||
                                (isLowSurrogate(unit) && (i == 0 || !isNext(i - 1, i)));
            if (!isHalf) {
                add(before.begin + pairs[i].before, after.begin + pairs[i].after, 1);
            }
        }
    }

    void compareEnds(const Region& region) {
        addEnds(m_before[region.before], m_before[region.beforeEnd - 1], m_after[region.after],
                m_after[region.afterEnd - 1]);
    }

    /// The letters at the begin of the first word and at the end of the last one.
    void addEnds(const Token& first, const Token& last, const Token& newFirst,
                 const Token& newLast) {
        auto begin =
            static_cast<std::size_t>(std::mismatch(first.text.begin(), first.text.end(),
                                                   newFirst.text.begin(), newFirst.text.end())
                                         .first -
                                     first.text.begin());
        begin -= begin > 0 && isHighSurrogate(first.text[begin - 1]) ? 1U : 0U;
        const std::size_t free = last.text.size() - (first.begin == last.begin ? begin : 0);
        const std::size_t newFree =
            newLast.text.size() - (newFirst.begin == newLast.begin ? begin : 0);
        std::size_t end = 0;
        while (end < std::min(free, newFree) && last.text[last.text.size() - 1 - end] ==
                                                    newLast.text[newLast.text.size() - 1 - end]) {
            ++end;
        }
        end -= end > 0 && isLowSurrogate(last.text[last.text.size() - end]) ? 1U : 0U;
        add(first.begin, newFirst.begin, begin);
        add(last.end() - end, newLast.end() - end, end);
    }

    void share(std::size_t before, std::size_t after) {
        add(m_before[before].begin, m_after[after].begin, m_before[before].text.size());
    }

    void add(std::size_t before, std::size_t after, std::size_t length) {
        if (length == 0) {
            return;
        }
        if (!m_runs.empty() && m_runs.back().before + m_runs.back().length == before &&
            m_runs.back().after + m_runs.back().length == after) {
            m_runs.back().length += length;
        } else {
            m_runs.push_back({before, after, length});
        }
    }

    Tokens m_before;
    Tokens m_after;
    std::vector<SharedRun> m_runs;
};

} // namespace

bool isWordUnit(char32_t unit) {
    const char32_t plain = unit >= exactBlank ? unit - exactBlank : unit;
    return plain < breakAtom && !isBlank(plain);
}

std::vector<SharedRun> sharedRuns(std::u32string_view before, std::u32string_view after) {
    return Diff(before, after).run();
}

} // namespace ravikit
