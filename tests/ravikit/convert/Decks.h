#pragma once

#include "ravikit/convert/Convert.h"
#include "ravikit/validity/Dtd.h"
#include "ravikit/xml/Parser.h"
#include "tests/ravikit/convert/Pages.h"

#include <memory>
#include <random>
#include <string>
#include <vector>

/// Decks, and the way to a page and back.
namespace convert_test {

struct Deck {
    std::string name;
    std::u16string text;
};
/// The decks of the folder beside this file and the example project's.
std::vector<Deck> writtenDecks();
/// A deck put together at random: well-formed, and valid if `valid`.
std::u16string generatedDeck(std::mt19937& random, bool valid);

} // namespace convert_test
