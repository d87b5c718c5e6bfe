#pragma once

#include "ravikit/xml/NameTable.h"
#include "ravikit/xml/declarations/Declarations.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace ravikit {

/// An element's number in a DTD: from 0, in the order of first mention.
using Symbol = std::uint16_t;

/// A content model as a table: from a state, each child leads to the next state. State 0 is the
/// start.
struct ContentTable {
    static constexpr std::uint16_t dead = 0xFFFF;

    /// By symbol; column 0 is that of the symbols that the model does not hold.
    std::vector<std::uint16_t> columns;
    std::uint16_t width = 1;
    std::vector<std::uint16_t> next; ///< [state * width + column]; `dead` if the child cannot stand
    /// By state: how many more children it takes to be complete; 0 if it is, `dead` if it can
    /// never be.
    std::vector<std::uint16_t> missing;

    std::uint16_t step(std::uint16_t state, Symbol child) const {
        return next[std::size_t{state} * width + columns[child]];
    }
    bool holds(Symbol child) const { return columns[child] != 0; }
};

/// The table of a model in which any number of `children` stands in any order, each of the
/// `symbols` symbols if `any`.
ContentTable freeContent(const std::vector<Symbol>& children, bool any, std::uint32_t symbols);

/// The table of `model`, whose names have their symbols in `names`. A model that is ambiguous comes
/// out as any other. None if the model is so large that the table would not be in proportion.
std::optional<ContentTable> compileContent(const ContentParticle& model, const NameTable& names);

} // namespace ravikit
