#pragma once

#include "ravikit/convert/page/Carrier.h"
#include "ravikit/html/PageTree.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Pages as a browser holds, changes and serialises them.
namespace convert_test {

/// The text of `bytes`; what is no UTF-8 gives some text too.
std::u16string fromUtf8(const std::string& bytes);
/// `text` with what isn't ASCII escaped.
std::string toUtf8(std::u16string_view text);

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

/// The page that was read, in an element of its own.
std::unique_ptr<PageElement> elementsOf(const ravikit::PageTree& tree);
std::u16string serialise(const PageElement& body, Browser browser);

/// `text` without blanks.
std::u16string letters(std::u16string_view text);

} // namespace convert_test
