// Takes pages to markup that no deck was made to show: pages of our own with other things spliced
// in, or the bytes themselves. Whatever comes, a deck goes out that is well-formed, and valid
// unless the page's own deck was not; its page holds all of the text, and it comes back as it is.
//
//   fuzz_page -dict=fuzz/xml.dict -max_len=400 CORPUS fuzz/corpus/page

#include "fuzz/PageMaker.h"
#include "fuzz/Pages.h"
#include "ravikit/Chars.h"
#include "ravikit/convert/PageTree.h"
#include "tests/ravikit/PageElements.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace {

using fuzz::expect;

/// How often each character is shown that a deck can hold.
std::map<char16_t, std::size_t> lettersOf(const std::u16string& page) {
    ravikit::PageTree tree;
    ravikit::Problems problems;
    expect(ravikit::readLiterally(page, tree) || ravikit::readAsBrowser(page, tree, problems),
           "not read again", page);
    std::map<char16_t, std::size_t> counts;
    for (const ravikit::PageNode& node : tree.nodes()) {
        for (const char16_t c : node.tag == ravikit::PageTag::None ? node.text : u"") {
            const bool isSurrogate = c >= 0xD800 && c < 0xE000;
            if (ravikit::isChar(c) && !ravikit::isBlank(c) && !isSurrogate) {
                ++counts[c];
            }
        }
    }
    return counts;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return -1;
    }
    fuzz::MadePage made;
    if (data[0] >= 0x20) {
        made.html = convert_test::fromUtf8({reinterpret_cast<const char*>(data), size});
    } else {
        made = fuzz::makePage(data + 1, size - 1);
    }
    const auto deck = fuzz::markupOf(made.html);
    if (!deck) {
        return 0;
    }
    const std::string fault = fuzz::faultOf(*deck, made.isOfValidDeck);
    expect(fault.empty(), fault.c_str(), made.html, *deck);
    const auto shown = fuzz::plainOf(*deck);
    expect(shown.has_value(), "refused", made.html, *deck);
    const auto after = lettersOf(*shown);
    for (const auto& [letter, count] : lettersOf(made.html)) {
        const auto found = after.find(letter);
        expect(found != after.end() && found->second >= count, "text is lost",
               std::u16string(1, letter), made.html, *deck);
    }
    expect(fuzz::markupOf(*shown) == deck, "not the same again", *deck, *shown);
    return 0;
}
