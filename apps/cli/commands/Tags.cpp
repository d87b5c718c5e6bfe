#include "apps/cli/Commands.h"

#include "platform/controls/HeadlessRichText.h"
#include "platform/files/TextCodec.h"
#include "ravikit/component/DtdCache.h"
#include "ravikit/text/NearMiss.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iostream>
#include <map>
#include <ostream>

namespace cli {

namespace {

/// Counts the tags that a document finds.
class TagCount : public tessaly::__WirelessDocument {
public:
    void OnRefresh() override {}
    void OnViewChange() override {}
    void OnParseError(std::shared_ptr<tessaly::ParseError>& /*err*/) override {}
    void OnClearErrors() override {}
    void OnDocDirty() override {}
    void OnUTag(std::u16string& strTagName) override { ++counts[utf8(strTagName)]; }
    void OnAdd2UndoStack(std::int32_t& /*lStart*/, std::u16string& /*txt*/,
                         std::u16string& /*delText*/, std::int32_t& /*action*/) override {}

    std::map<std::string, int> counts;
};

std::map<std::string, int> tagsIn(const Deck& deck, const std::u16string& list) {
    TagCount found;
    const auto listening = deck.document->events().advise(found);
    deck.document->MuRtb(std::make_shared<tessaly::HeadlessRichText>());
    deck.document->view(tessaly::vMarkup);
    deck.document->validateSupportedTags(list);
    return found.counts;
}

/// A name that WML does not know is looked for all the same, since a deck may have it.
void warnOfUnknown(const std::u16string& list) {
    const auto dtd = tessaly::builtInDtd();
    const auto& elements = dtd->declarations().elements;
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t end = std::min(list.find(u',', at), list.size());
        const std::u16string name = list.substr(at, end - at);
        at = end + 1;
        ravikit::NearMiss near(name);
        bool isKnown = false;
        for (const auto& element : elements) {
            isKnown = isKnown || element.name == name;
            near.offer(element.name);
        }
        if (!isKnown) {
            std::cerr << "tessaly: `" << harmless(utf8(name)) << "` is no element of WML"
                      << (near.best().empty() ? "" : "; did you mean `" + utf8(near.best()) + "`?")
                      << '\n';
        }
    }
}

} // namespace

ExitStatus tags(const std::string& list, const std::vector<std::string>& paths, bool json,
                const Printer& printer) {
    Session session;
    nlohmann::ordered_json report = nlohmann::ordered_json::array();
    const std::u16string names = tessaly::decodeText(list);
    warnOfUnknown(names);
    const auto look = [&](const Deck& deck) {
        if (deck.document->DOM()->xml().empty()) {
            session.complain(ExitStatus::Invalid, deck.file,
                             "is not well-formed and was not searched");
        }
        for (const auto& [name, count] : tagsIn(deck, names)) {
            session.raiseStatus(ExitStatus::Invalid);
            report.push_back({{"file", deck.file}, {"tag", name}, {"count", count}});
            if (!json) {
                printer.out() << printer.styled(Style::Strong, shownPath(deck.file) + ": ")
                              << printer.styled(Style::Plain, name) << ' ' << count << '\n';
            }
        }
    };
    session.visitDecks(paths, look);
    if (json) {
        printer.out() << report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
                      << '\n';
    }
    return session.status();
}

} // namespace cli
