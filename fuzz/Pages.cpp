#include "fuzz/Pages.h"

#include "ravikit/Dtd.h"
#include "ravikit/Parser.h"
#include "ravikit/convert/Convert.h"
#include "tests/ravikit/PageElements.h"

#include <cstdlib>
#include <iostream>

namespace fuzz {

namespace {

const ravikit::Declarations& known() {
    return ravikit::Dtd::builtIn()->declarations();
}

} // namespace

std::optional<std::u16string> plainOf(const std::u16string& deck) {
    std::u16string text = deck;
    ravikit::Problems problems;
    if (!ravikit::markupToPlain(text, true, &known(), problems)) {
        expect(!problems.empty() && text == deck, "a refusal without a reason", deck, text);
        return std::nullopt;
    }
    expect(problems.empty(), "a page, and a problem", deck, text);
    return text;
}

std::optional<std::u16string> markupOf(const std::u16string& page) {
    std::u16string text = page;
    ravikit::Problems problems;
    if (!ravikit::plainToMarkup(text, false, &known(), problems)) {
        expect(!problems.empty() && text == page, "a refusal without a reason", page, text);
        return std::nullopt;
    }
    expect(problems.empty(), "a deck, and a problem", page, text);
    return text;
}

std::string faultOf(const std::u16string& deck, bool valid) {
    const auto tree = ravikit::parse(deck, &known());
    ravikit::Problems problems = tree->problems();
    if (problems.empty() && valid) {
        ravikit::Dtd::builtIn()->judge(*tree, problems);
    }
    return problems.empty() ? std::string() : convert_test::toUtf8(problems.list().front().reason);
}

std::optional<std::u16string> browsed(const std::u16string& page, bool oldStyle) {
    ravikit::PageTree tree;
    ravikit::Problems problems;
    if (!ravikit::readAsBrowser(page, tree, problems)) {
        return std::nullopt;
    }
    using convert_test::Browser;
    return convert_test::serialise(*convert_test::elementsOf(tree),
                                   oldStyle ? Browser::Old : Browser::Modern);
}

void expect(bool holds, const char* what, const std::u16string& a, const std::u16string& b,
            const std::u16string& c) {
    if (holds) {
        return;
    }
    std::cerr << what << "\n";
    for (const std::u16string* text : {&a, &b, &c}) {
        if (!text->empty()) {
            std::cerr << "---\n" << convert_test::toUtf8(*text) << "\n";
        }
    }
    std::abort();
}

} // namespace fuzz
