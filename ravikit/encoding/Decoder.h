#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ravikit {

/// True if the system knows an encoding of this name, in any case, or one that is meant by it.
bool isKnownEncoding(std::u16string_view name);

/// A text, and what it was decoded by.
struct Decoded {
    std::u16string text;
    std::string encoding;
};

/// The text of a deck whose declaration names `name`: in that encoding or, where it has no meaning
/// for some byte, in the wider one that tools write under the same name. None if it is in neither;
/// nor if the declaration does not say the same once it is decoded, and cannot be true therefore.
/// `good` is then how many bytes are in the one that fits best.
std::optional<Decoded> decodeDeclared(std::string_view bytes, std::u16string_view name,
                                      std::size_t* good = nullptr);

} // namespace ravikit
