#include "apps/cli/Commands.h"
#include "apps/cli/session/PageText.h"

#include "platform/files/TextCodec.h"
#include "util/LetterCase.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <ostream>

namespace cli {

namespace {

/// A card as it is to be shown; what its display refused is empty.
std::string shown(const Deck& deck, const std::u16string& html, std::int32_t index, CardForm form) {
    if (form == CardForm::Markup) {
        return utf8(deck.document->DOM()->selectNodes(u"//card")->item(index)->xml());
    }
    return form == CardForm::Plain ? utf8(html) : pageText(utf8(html));
}

const char* nameOf(CardForm form) {
    switch (form) {
    case CardForm::Plain:
        return "plain";
    case CardForm::Markup:
        return "markup";
    case CardForm::Text:
        break;
    }
    return "text";
}

/// Walks the cards of one deck as a host does, and prints them.
class Walk {
public:
    Walk(Session& session, CardForm form, bool json, const Printer& printer)
        : m_session(session)
        , m_printer(printer)
        , m_form(form)
        , m_json(json) {}

    void deck(const Deck& deck) {
        const auto display = deck.document->Display();
        const std::vector<std::string> ids = cardIds(*deck.document);
        if (ids.empty()) {
            m_session.complain(ExitStatus::Invalid, deck.file, whyNoCards(deck));
        }
        nlohmann::ordered_json cards = nlohmann::ordered_json::array();
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const std::u16string html =
                i == 0 ? display->currentDisplayNode() : display->nextDisplayNode();
            if (html.empty()) {
                m_session.complain(ExitStatus::Invalid, deck.file, "a card cannot be shown");
            }
            const std::string text = shown(deck, html, static_cast<std::int32_t>(i), m_form);
            if (m_json) {
                cards.push_back({{"index", i}, {"id", ids[i]}, {nameOf(m_form), text}});
            } else {
                print(deck, i, ids, text);
            }
        }
        m_decks.push_back({{"file", deck.file}, {"cards", std::move(cards)}});
    }

    void end() {
        if (m_json) {
            m_printer.out() << m_decks.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
                            << '\n';
        }
    }

private:
    static std::string whyNoCards(const Deck& deck) {
        const auto error = obstacle(deck);
        return error ? "no cards to show; line " + std::to_string(error->line()) + ", column " +
                           std::to_string(error->column()) + ": " + utf8(error->reason())
                     : "no cards to show";
    }

    /// The error that keeps the cards from being found; none of a valid deck.
    static std::shared_ptr<tessaly::ParseError> obstacle(const Deck& deck) {
        if (deck.document->isValidXML()) {
            return nullptr;
        }
        std::shared_ptr<tessaly::ParseError> worst = deck.document->Tolmek()->lastError();
        for (auto error = worst; error; error = error->next()) {
            if (rank(*error) < rank(*worst)) {
                worst = error;
            }
        }
        return worst;
    }

    /// What is not well-formed has no cards at all; then what stands in the place of a card.
    static int rank(const tessaly::ParseError& error) {
        constexpr std::int32_t wellFormed = 300;
        constexpr std::array<std::int32_t, 4> ofElements{300, 301, 303, 309};
        const bool isOfElements =
            std::find(ofElements.begin(), ofElements.end(), error.number()) != ofElements.end();
        return error.number() < wellFormed ? 0 : isOfElements ? 1 : 2;
    }

    void print(const Deck& deck, std::size_t index, const std::vector<std::string>& ids,
               const std::string& text) const {
        const std::string heading =
            std::to_string(index + 1) + '/' + std::to_string(ids.size()) + ' ' + ids[index];
        if (index == 0) {
            m_printer.out() << m_printer.styled(Style::Faint, shownPath(deck.file)) << '\n';
        }
        m_printer.out() << m_printer.styled(Style::Strong, heading) << '\n'
                        << m_printer.styled(Style::Plain, text)
                        << (text.empty() || text.back() != '\n' ? "\n\n" : "\n");
    }

    Session& m_session;
    const Printer& m_printer;
    CardForm m_form;
    bool m_json;
    nlohmann::ordered_json m_decks = nlohmann::ordered_json::array();
};

} // namespace

ExitStatus cards(const std::string& path, const std::string& deckName, CardForm form, bool json,
                 const Printer& printer) {
    Session session;
    Walk walk(session, form, json, printer);
    bool found = false;
    session.visitDecks({path}, [&](const Deck& deck) {
        if (deckName.empty() ||
            tessaly::equalIgnoringCase(deck.document->Name(), tessaly::decodeText(deckName))) {
            found = true;
            walk.deck(deck);
        }
    });
    if (!found && session.status() == ExitStatus::Fine) {
        session.complain(ExitStatus::Unreadable, path,
                         deckName.empty() ? "no decks" : "no deck is called " + deckName);
    }
    walk.end();
    return session.status();
}

} // namespace cli
