// Takes pages to markup that no deck was made to show: pages of our own with other things spliced
// in, or the bytes themselves.
//
//   fuzz_page -dict=fuzz/xml.dict -max_len=400 CORPUS fuzz/corpus/page

#include "tests/ravikit/convert/PageMaker.h"
#include "tests/ravikit/convert/Pages.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return -1;
    }
    convert_test::MadePage made;
    if (data[0] >= 0x20) {
        made.html = convert_test::fromUtf8({reinterpret_cast<const char*>(data), size});
    } else {
        made = convert_test::makePage(data + 1, size - 1);
    }
    if (convert_test::deckOf(made.html)) {
        convert_test::expectTaken(made.html, made.isOfValidDeck);
    }
    return 0;
}
