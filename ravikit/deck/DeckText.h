#pragma once

#include <string>

namespace ravikit {

/// The text that a document is to hold for a deck as it was read: without a byte-order mark. All
/// else stays as it is.
std::u16string importDeck(std::u16string text);

/// The text as it goes into a UTF-8 file: an encoding that its XML declaration names becomes UTF-8,
/// all else stays as it is.
std::u16string declareUtf8(std::u16string text);

/// The text that goes into a deck file, which is written in UTF-8: with an XML declaration and a
/// DOCTYPE where a deck with a `wml` root lacks them, and with a declared encoding that is true.
/// All else stays as it is, and all of a text whose encoding cannot be read; exporting twice is the
/// same as exporting once.
std::u16string exportDeck(std::u16string text);

} // namespace ravikit
