#include "apps/cli/session/ViewCheck.h"

#include "apps/cli/session/FileNotes.h"
#include "platform/controls/HeadlessBrowser.h"
#include "platform/controls/HeadlessRichText.h"
#include "platform/files/FileText.h"
#include "platform/files/TextCodec.h"
#include "platform/page/HeadlessPage.h"
#include "ravikit/text/Lines.h"

#include <algorithm>

namespace cli {

namespace {

bool isBlank(tessaly::WirelessDocument& document) {
    const auto decks = document.DOM()->getElementsByTagName(u"wml");
    return decks->length() == 0 || decks->item(0)->childNodes()->length() == 0;
}

Switched lostAt(const std::u16string& text, std::size_t offset, std::string reason) {
    const auto place = ravikit::Lines(text).at(static_cast<std::uint32_t>(offset));
    return {Switched::Outcome::Lost, place.line, place.column, std::move(reason)};
}

/// Compares what came back with the document's text and with the file that it was read from.
Switched compare(const std::u16string& before, const std::u16string& after,
                 const std::optional<std::string>& file) {
    const auto [lost, instead] =
        std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    if (lost != before.end() || instead != after.end()) {
        return lostAt(before, static_cast<std::size_t>(lost - before.begin()),
                      "the page does not give this back");
    }
    const bool isMarked = file && file->starts_with("\xEF\xBB\xBF");
    const std::string bytes = tessaly::encodeUtf8(isMarked ? u'\xFEFF' + after : after);
    if (!file || bytes == *file) {
        return {Switched::Outcome::Whole};
    }
    std::u16string text = tessaly::decodeFile(*file).text;
    text.erase(0, text.starts_with(u'\xFEFF') ? 1 : 0);
    return text == after ? Switched{Switched::Outcome::OtherEncoding}
                         : lostAt(before, 0, "the deck was read as something else than its file");
}

} // namespace

Switched switchThereAndBack(const Deck& deck) {
    tessaly::WirelessDocument& document = *deck.document;
    const std::u16string before = document.Content();
    if (document.DOM()->xml().empty()) {
        return {};
    }
    if (isBlank(document)) {
        return {Switched::Outcome::Blank};
    }
    const auto browser =
        std::make_shared<tessaly::HeadlessBrowser>(std::make_shared<tessaly::MessageLoop>());
    browser->Document(tessaly::makePage(u""));
    const auto text = std::make_shared<tessaly::HeadlessRichText>();
    document.wbPlain(browser);
    document.MuRtb(text);
    document.view(tessaly::vPLain);
    if (document.view() != tessaly::vPLain) {
        return lostAt(before, 0, "the deck cannot be shown as a page");
    }
    // From here on the control holds what came back from the page, and nothing else.
    text->Text(u"");
    document.view(tessaly::vMarkup);
    if (document.view() != tessaly::vMarkup) {
        return lostAt(before, 0, "the page cannot be taken back as a deck");
    }
    return compare(before, text->Text(), bytesOf(deck));
}

} // namespace cli
