#pragma once

#include "ravikit/Dtd.h"
#include "ravikit/Parser.h"
#include "ravikit/convert/Carrier.h"
#include "ravikit/convert/Convert.h"
#include "ravikit/convert/PageTree.h"

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// Decks, and pages as a browser holds, changes and serialises them.
namespace convert_test {

struct Deck {
    std::string name;
    std::u16string text;
};
/// The decks of the folder beside this file and the example project's.
std::vector<Deck> writtenDecks();
/// A deck put together at random: well-formed, and valid if `valid`.
std::u16string generatedDeck(std::mt19937& random, bool valid);

std::u16string fromUtf8(std::string_view bytes);
std::string toUtf8(std::u16string_view text);

/// The page of `deck`; fails the test if there is none.
std::u16string plainOf(const std::u16string& deck);
/// The deck of `page`; fails the test if there is none.
std::u16string markupOf(const std::u16string& page);
bool isValid(const std::u16string& deck, std::string* why = nullptr);

/// How a browser writes a page.
enum class Browser : std::uint8_t {
    Modern, ///< small letters, every value in quotes
    Old,    ///< capitals, values without quotes where it can be, attributes in another order
};

/// A node of a page that can be changed.
struct PageElement {
    std::u16string tag; ///< empty for a text
    std::u16string text;
    std::vector<std::pair<std::u16string, std::u16string>> attributes;
    std::vector<std::unique_ptr<PageElement>> children;
    PageElement* parent = nullptr;

    const std::u16string* attribute(std::u16string_view name) const;
    void set(std::u16string_view name, std::u16string_view value);
    std::unique_ptr<PageElement> clone() const;
    std::size_t index() const;
    std::unique_ptr<PageElement> take(); ///< out of its parent
    PageElement* insert(std::size_t at, std::unique_ptr<PageElement> child);
    std::u16string innerText() const;
    bool isMarked() const { return attribute(ravikit::markAttribute) != nullptr; }
    void collect(std::vector<PageElement*>& all); ///< all inside, in order
};
std::unique_ptr<PageElement> makeElement(std::u16string_view tag);
std::unique_ptr<PageElement> makeText(std::u16string_view text);

/// The page as a browser reads it.
std::unique_ptr<PageElement> browse(const std::u16string& page);
std::u16string serialise(const PageElement& body, Browser browser);

/// `text` without blanks.
std::u16string letters(std::u16string_view text);

} // namespace convert_test
