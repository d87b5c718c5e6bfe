#pragma once

#include "ravikit/html/PageTree.h"
#include "ravikit/text/Problem.h"

#include <string>

namespace ravikit {

struct Declarations;

/// The markup of `page`. `strict` gives false, with the reasons in `problems`, if something on the
/// page has no place in a deck.
bool mergePage(const PageTree& page, bool strict, const Declarations* known, std::u16string& markup,
               Problems& problems);

} // namespace ravikit
