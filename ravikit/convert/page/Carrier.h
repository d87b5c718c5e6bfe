#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What a page carries besides what it shows: the deck's source, and of each element where in it it
/// stands. All is written in ASCII letters that mean nothing in HTML, so that nothing a browser
/// does to quotes, entities and line ends can change it.
namespace ravikit {

inline constexpr std::u16string_view deckAttribute = u"data-deck"; ///< the source, once a page
inline constexpr std::u16string_view markAttribute = u"data-mark"; ///< the mark of an element
inline constexpr std::u16string_view textAttribute = u"data-text"; ///< shows this attribute
inline constexpr std::u16string_view partAttribute = u"data-part"; ///< a part of a paragraph

/// Appends `source` as the value of a deck attribute.
void appendCarried(std::u16string& page, std::u16string_view source);

/// The source that such a value carries; none if it isn't whole.
std::optional<std::u16string> carriedSource(std::u16string_view value);

/// The mark of an element: which deck it is from, where there its tag begins, and the digest of
/// what the page shows of it. Deck and digest are cut to what a mark has room for.
struct Mark {
    static constexpr unsigned deckLetters = 4;
    static constexpr unsigned digestLetters = 8;
    std::uint64_t deck = 0;
    std::uint64_t digest = 0;
    std::uint32_t begin = 0; ///< offset in the deck's source

    static std::uint64_t deckOf(std::uint64_t hash) { return hash >> (64 - 6 * deckLetters); }
    static std::uint64_t digestOf(std::uint64_t hash) { return hash >> (64 - 6 * digestLetters); }
};

/// Appends a mark attribute for an element whose digest isn't known yet, a blank before it, and
/// gives the place for the digest.
std::size_t appendMark(std::u16string& page, std::uint64_t deck, std::uint32_t begin);
void setDigest(std::u16string& page, std::size_t place, std::uint64_t digest);

std::optional<Mark> readMark(std::u16string_view value);

} // namespace ravikit
