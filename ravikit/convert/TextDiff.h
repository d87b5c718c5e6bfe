#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace ravikit {

/// A run of units that stands in two texts.
struct SharedRun {
    std::size_t before = 0; ///< where it begins in the first text
    std::size_t after = 0;  ///< and in the second
    std::size_t length = 0;
};

/// What of `before` a reader would say is still there in `after`: whole words first, then the
/// letters at the begin and end of a word that has changed. The runs stand in the order of both
/// texts and do not overlap. Both are as in SourceAtom::unit: a space for any blank, `breakAtom`
/// for a line break. The cost grows with the lengths of the texts, not with their product.
std::vector<SharedRun> sharedRuns(std::u32string_view before, std::u32string_view after);

/// Whether `unit` belongs to a word: no blank, no break and no place where elements were.
bool isWordUnit(char32_t unit);

} // namespace ravikit
