#include "ravikit/validity/ContentModel.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace ravikit {
namespace {

constexpr std::size_t mostPositions = 1024;
constexpr std::size_t mostStates = 1024;

/// A set of positions: places in the model where a name stands, by number, in ascending order.
using Positions = std::vector<std::uint16_t>;

void merge(Positions& into, const Positions& from) {
    const auto middle = static_cast<std::ptrdiff_t>(into.size());
    into.insert(into.end(), from.begin(), from.end());
    std::inplace_merge(into.begin(), into.begin() + middle, into.end());
    into.erase(std::unique(into.begin(), into.end()), into.end());
}

/// What Glushkov's construction asks of a particle.
struct Part {
    bool nullable = true;
    Positions first;
    Positions last;
};

/// The positions of a model and which may follow which.
class Glushkov {
public:
    explicit Glushkov(const NameTable& names)
        : m_names(names) {}

    // Particles nest no deeper than the reader of declarations lets them.
    Part add(const ContentParticle& particle) {
        Part part;
        if (particle.kind == ContentParticle::Kind::Name) {
            part = addName(particle.name);
        } else if (particle.kind == ContentParticle::Kind::Sequence) {
            part = addSequence(particle);
        } else {
            part.nullable = false;
            for (const ContentParticle& child : particle.children) {
                const Part next = add(child);
                part.nullable = part.nullable || next.nullable;
                merge(part.first, next.first);
                merge(part.last, next.last);
            }
        }
        using Repeat = ContentParticle::Repeat;
        if (particle.repeat == Repeat::ZeroOrMore || particle.repeat == Repeat::OneOrMore) {
            link(part.last, part.first);
        }
        part.nullable = part.nullable || particle.repeat == Repeat::Optional ||
                        particle.repeat == Repeat::ZeroOrMore;
        return part;
    }

    bool tooLarge() const { return m_tooLarge; }
    Symbol symbol(std::uint16_t position) const { return m_symbols[position]; }
    const std::vector<Symbol>& symbols() const { return m_symbols; }
    const Positions& follow(std::uint16_t position) const { return m_follow[position]; }

private:
    Part addName(std::u16string_view name) {
        if (m_symbols.size() == mostPositions) {
            m_tooLarge = true;
            return {};
        }
        const auto position = static_cast<std::uint16_t>(m_symbols.size());
        m_symbols.push_back(static_cast<Symbol>(m_names.find(name)));
        m_follow.emplace_back();
        return {false, {position}, {position}};
    }

    Part addSequence(const ContentParticle& particle) {
        Part part;
        for (const ContentParticle& child : particle.children) {
            Part next = add(child);
            link(part.last, next.first);
            if (part.nullable) {
                merge(part.first, next.first);
            }
            if (next.nullable) {
                merge(next.last, part.last);
            }
            part.last = std::move(next.last);
            part.nullable = part.nullable && next.nullable;
        }
        return part;
    }

    void link(const Positions& from, const Positions& to) {
        m_links += from.size() * to.size();
        m_tooLarge = m_tooLarge || m_links > mostPositions * mostPositions;
        if (m_tooLarge) {
            return;
        }
        for (const std::uint16_t position : from) {
            merge(m_follow[position], to);
        }
    }

    const NameTable& m_names;
    std::vector<Symbol> m_symbols;
    std::vector<Positions> m_follow;
    std::size_t m_links = 0;
    bool m_tooLarge = false;
};

/// A state is what may come next, and whether nothing need come. States that are alike in this are
/// one, whichever way leads to them.
struct State {
    Positions next;
    bool complete = false;
    bool operator<(const State& other) const {
        return std::tie(next, complete) < std::tie(other.next, other.complete);
    }
};

/// Counts back from the complete states, most of which have high numbers.
void countMissing(ContentTable& table) {
    for (bool changed = true; changed;) {
        changed = false;
        for (std::size_t state = table.missing.size(); state-- > 0;) {
            for (std::size_t column = 1; column < table.width; ++column) {
                const std::uint16_t next = table.next[state * table.width + column];
                if (next != ContentTable::dead &&
                    table.missing[next] + 1 < int{table.missing[state]}) {
                    table.missing[state] = static_cast<std::uint16_t>(table.missing[next] + 1);
                    changed = true;
                }
            }
        }
    }
}

void numberColumns(ContentTable& table, const std::vector<Symbol>& children,
                   std::uint32_t symbols) {
    table.columns.assign(symbols, 0);
    for (const Symbol child : children) {
        if (table.columns[child] == 0) {
            table.columns[child] = table.width++;
        }
    }
}

} // namespace

ContentTable freeContent(const std::vector<Symbol>& children, bool any, std::uint32_t symbols) {
    ContentTable table;
    numberColumns(table, children, symbols);
    table.next.assign(table.width, 0);
    table.next[0] = any ? 0 : ContentTable::dead;
    table.missing = {0};
    return table;
}

std::optional<ContentTable> compileContent(const ContentParticle& model, const NameTable& names) {
    Glushkov glushkov(names);
    Part whole = glushkov.add(model);
    if (glushkov.tooLarge()) {
        return std::nullopt;
    }
    ContentTable table;
    numberColumns(table, glushkov.symbols(), names.size());

    const Positions ends = std::move(whole.last);
    std::map<State, std::uint16_t> numbers;
    std::vector<const State*> states;
    const auto numberOf = [&](State state) {
        const auto [at, isNew] =
            numbers.try_emplace(std::move(state), static_cast<std::uint16_t>(states.size()));
        if (isNew) {
            states.push_back(&at->first);
            table.missing.push_back(at->first.complete ? 0 : ContentTable::dead);
        }
        return at->second;
    };
    numberOf({std::move(whole.first), whole.nullable});
    for (std::size_t state = 0; state < states.size(); ++state) {
        if (states.size() > mostStates) {
            return std::nullopt;
        }
        std::map<std::uint16_t, State> targets; // by column
        for (const std::uint16_t position : states[state]->next) {
            State& target = targets[table.columns[glushkov.symbol(position)]];
            merge(target.next, glushkov.follow(position));
            target.complete =
                target.complete || std::binary_search(ends.begin(), ends.end(), position);
        }
        table.next.resize((state + 1) * table.width, ContentTable::dead);
        for (auto& [column, target] : targets) {
            table.next[state * table.width + column] = numberOf(std::move(target));
        }
    }
    countMissing(table);
    return table;
}

} // namespace ravikit
