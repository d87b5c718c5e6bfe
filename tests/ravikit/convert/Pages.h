#pragma once

#include "platform/page/dom/Dom.h"
#include "platform/page/dom/PageWriter.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The way of a deck to its page and back, as the tests and the fuzzers ask about it. What does not
/// hold is thrown, with the texts that it is about.
namespace convert_test {

void expect(bool holds, const std::string& what, const std::u16string& a = {},
            const std::u16string& b = {}, const std::u16string& c = {});

/// The page of `deck`; none if it is refused.
std::optional<std::u16string> pageOf(const std::u16string& deck);
/// The deck of `page`; none if it is refused.
std::optional<std::u16string> deckOf(const std::u16string& page);

/// The same where nothing may be refused.
std::u16string plainOf(const std::u16string& deck);
std::u16string markupOf(const std::u16string& page);

/// Why `deck` is not well-formed, or else not valid; empty if it is both.
std::string faultOf(const std::u16string& deck, bool valid = true);

using tessaly::page::Dom;
using tessaly::page::Node;
using tessaly::page::Writing;

/// The page as a browser reads it; none if it is too deep for one.
std::unique_ptr<Dom> browse(const std::u16string& page);
std::u16string written(const Dom& page, Writing writing);
/// What the page shows below `node`, labels of fields and pictures included.
std::u16string shownText(const Node& node);

/// The text of `bytes`; what is no UTF-8 gives some text too.
std::u16string fromUtf8(const std::string& bytes);
/// `text` with what isn't ASCII escaped.
std::string toUtf8(std::u16string_view text);
/// `text` without blanks.
std::u16string letters(std::u16string_view text);

/// A page that nobody changed gives `deck` back, unit by unit, also when a browser has parsed it
/// and written it in its own way, and a page with a stranger on it still gives a deck.
void expectKept(const std::u16string& deck);

/// Whatever the page is: a deck goes out that is well-formed, and valid unless the page's own deck
/// was not; its page holds all of the text, and it comes back as it is.
void expectTaken(const std::u16string& page, bool isOfValidDeck = true);

} // namespace convert_test
