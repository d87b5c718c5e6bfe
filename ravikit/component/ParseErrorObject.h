#pragma once

#include "external/ParseError.h"
#include "ravikit/text/Problem.h"

#include <memory>
#include <string>

namespace tessaly {

/// The first of `problems`, which is not empty and in the order of places, as an error of `text`;
/// its `next` leads to the others.
std::shared_ptr<ParseError> makeParseError(std::u16string text, ravikit::Problems problems);

} // namespace tessaly
