#pragma once

#include "external/Ravikit.h"

#include <memory>
#include <string>

/// The two conversions of a deck's text. Both convert `strText` in place; False leaves it as it was
/// and `objTolmek` then knows why. No `objTolmek` fails with ObjectNotSet.
namespace tessaly::modTessaly {

/// WML source to the HTML of the plain view.
bool convertToPlain(const std::shared_ptr<Tolmek>& objTolmek, std::u16string& strText);

/// The HTML of the plain view to WML source. `bStrict` refuses what could not be taken over as it
/// is.
bool convertToMarkup(const std::shared_ptr<Tolmek>& objTolmek, std::u16string& strText,
                     bool bStrict);

} // namespace tessaly::modTessaly
