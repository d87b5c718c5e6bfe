#include "apps/cli/ViewCheck.h"

#include "platform/HeadlessBrowser.h"
#include "platform/HeadlessRichText.h"
#include "platform/page/HeadlessPage.h"

#include <algorithm>

namespace cli {

namespace {

bool isBlank(tessaly::WirelessDocument& document) {
    const auto decks = document.DOM()->getElementsByTagName(u"wml");
    return decks->length() == 0 || decks->item(0)->childNodes()->length() == 0;
}

Loss lossAt(const std::u16string& text, std::size_t at, std::string reason) {
    Loss loss;
    for (std::size_t i = 0; i < at; ++i) {
        ++loss.column;
        if (text[i] == u'\n') {
            ++loss.line;
            loss.column = 1;
        }
    }
    loss.reason = std::move(reason);
    return loss;
}

} // namespace

std::optional<Loss> switchThereAndBack(const Deck& deck) {
    tessaly::WirelessDocument& document = *deck.document;
    const std::u16string before = document.Content();
    if (isBlank(document)) {
        return std::nullopt;
    }
    const auto browser =
        std::make_shared<tessaly::HeadlessBrowser>(std::make_shared<tessaly::MessageLoop>());
    browser->Document(tessaly::makePage(u""));
    const auto text = std::make_shared<tessaly::HeadlessRichText>();
    document.wbPlain(browser);
    document.MuRtb(text);
    document.view(tessaly::vPLain);
    if (document.view() != tessaly::vPLain) {
        return lossAt(before, 0, "the deck cannot be shown as a page");
    }
    // Behind this the control holds what came back from the page, and nothing else.
    text->Text(u"");
    document.view(tessaly::vMarkup);
    if (document.view() != tessaly::vMarkup) {
        return lossAt(before, 0, "the page cannot be taken back as a deck");
    }
    const std::u16string after = text->Text();
    const auto [lost, instead] =
        std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    if (lost == before.end() && instead == after.end()) {
        return std::nullopt;
    }
    return lossAt(before, static_cast<std::size_t>(lost - before.begin()),
                  "the page does not give this back");
}

} // namespace cli
