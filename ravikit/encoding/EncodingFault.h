#pragma once

#include "ravikit/text/Problem.h"

#include <optional>
#include <string_view>

namespace ravikit {

/// What keeps `text` from being read at all: an encoding that its declaration names and nobody
/// knows. None if there is nothing of the kind.
std::optional<Problem> unknownEncoding(std::u16string_view text);

/// The same for bytes that `text` holds because they could not be decoded. It looks at all of the
/// text, so ask where something else is wrong already: such bytes are no characters.
std::optional<Problem> undecodedBytes(std::u16string_view text);

} // namespace ravikit
