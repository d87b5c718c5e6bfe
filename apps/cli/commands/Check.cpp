#include "apps/cli/Commands.h"
#include "apps/cli/session/ViewCheck.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <optional>
#include <ostream>

namespace cli {

namespace {

using Error = std::shared_ptr<tessaly::ParseError>;

/// The first error of a deck that was judged when it was opened; none for a valid one.
Error firstError(const Deck& deck) {
    return deck.document->isValidXML() ? nullptr : deck.document->Tolmek()->lastError();
}

/// Deals with the decks one by one, so that a large folder costs no more memory than its largest
/// deck.
class Report {
public:
    virtual ~Report() = default;
    virtual void deck(const Deck& deck) = 0;
    /// `unread`: what could not be judged.
    virtual void end(const std::vector<Session::Unread>& unread) = 0;

    bool views = false; ///< whether to take decks to the page and back
    std::size_t decks = 0;
    std::size_t invalid = 0;
    std::size_t errors = 0;
    std::size_t switched = 0;      ///< decks that were taken to the page and back
    std::size_t notShown = 0;      ///< and such that could not be: they are not well-formed
    std::size_t otherEncoding = 0; ///< of those switched, came back in UTF-8 from another encoding
    std::size_t lost = 0;          ///< and did not come back as they were

protected:
    void count(const Deck& deck) {
        ++decks;
        if (!deck.document->isValidXML()) {
            ++invalid;
        }
        for (Error error = firstError(deck); error; error = error->next()) {
            ++errors;
        }
    }

    /// Nothing where nobody asked.
    std::optional<Switched> switchOf(const Deck& deck) {
        if (!views) {
            return std::nullopt;
        }
        using Outcome = Switched::Outcome;
        const Switched result = switchThereAndBack(deck);
        notShown += result.outcome == Outcome::NotShown ? 1U : 0U;
        const bool isSwitched =
            result.outcome != Outcome::NotShown && result.outcome != Outcome::Blank;
        switched += isSwitched ? 1U : 0U;
        otherEncoding += result.outcome == Outcome::OtherEncoding ? 1U : 0U;
        lost += result.outcome == Outcome::Lost ? 1U : 0U;
        return result;
    }
};

class TextReport : public Report {
public:
    explicit TextReport(const Printer& printer)
        : m_printer(printer) {}

    void deck(const Deck& deck) override {
        count(deck);
        const std::u16string text = m_printer.rich() ? deck.document->Content() : std::u16string();
        for (Error error = firstError(deck); error; error = error->next()) {
            line(deck.file, text, *error);
        }
        for (const Note& note : deck.notes) {
            place(deck.file, note.line, note.column, Style::Place, "note:", note.reason);
        }
        const std::optional<Switched> result = switchOf(deck);
        if (result && result->outcome == Switched::Outcome::Lost) {
            place(deck.file, result->line, result->column, Style::Error, "error:", result->reason);
        }
    }

    void end(const std::vector<Session::Unread>& unread) override {
        const std::string errorCount = counted(errors, "error");
        const std::string good = counted(decks, "deck") + " checked";
        std::string verdict =
            invalid > 0
                ? errorCount + " in " + std::to_string(invalid) + " of " + counted(decks, "deck")
                : good + (unread.empty() || decks > 0 ? ", no errors" : "");
        if (!unread.empty()) {
            verdict += "; " + std::to_string(unread.size()) + " could not be read in full";
        }
        m_printer.out() << m_printer.styled(Style::Strong, verdict) << '\n';
        if (views) {
            endViews();
        }
    }

private:
    void endViews() const {
        m_printer.out() << counted(switched, "deck") << " switched to the page and back, "
                        << (lost == 0 ? "no byte lost"
                                      : std::to_string(lost) + " did not come back whole")
                        << '\n';
        if (otherEncoding > 0) {
            m_printer.out() << counted(otherEncoding, "deck")
                            << " came back in UTF-8 from another encoding\n";
        }
        if (notShown > 0) {
            m_printer.out() << counted(notShown, "deck")
                            << " could not be switched: not well-formed\n";
        }
    }

    static std::string counted(std::size_t count, const std::string& what) {
        return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
    }

    void place(const std::string& file, std::size_t line, std::size_t column, Style style,
               const std::string& kind, const std::string& reason) const {
        const std::string where =
            shownPath(file) + ':' + std::to_string(line) + ':' + std::to_string(column) + ':';
        m_printer.out() << m_printer.styled(Style::Strong, where) << ' '
                        << m_printer.styled(style, kind) << ' '
                        << m_printer.styled(Style::Plain, reason) << '\n';
    }

    void line(const std::string& file, const std::u16string& text,
              tessaly::ParseError& error) const {
        const auto column = static_cast<std::size_t>(error.column());
        place(file, static_cast<std::size_t>(error.line()), column, Style::Error,
              "error:", utf8(error.reason()));
        if (m_printer.rich()) {
            m_printer.snippet(text, static_cast<std::size_t>(error.position()));
        }
    }

    const Printer& m_printer;
};

const char* nameOf(Switched::Outcome outcome) {
    switch (outcome) {
    case Switched::Outcome::Whole:
        return "same bytes";
    case Switched::Outcome::OtherEncoding:
        return "other encoding";
    case Switched::Outcome::Lost:
        return "lost";
    case Switched::Outcome::Blank:
        return "blank";
    default:
        return "not well-formed";
    }
}

class JsonReport : public Report {
public:
    explicit JsonReport(const Printer& printer)
        : m_printer(printer) {}

    void deck(const Deck& deck) override {
        count(deck);
        nlohmann::ordered_json errorList = nlohmann::ordered_json::array();
        for (Error error = firstError(deck); error; error = error->next()) {
            errorList.push_back({{"number", error->number()},
                                 {"line", error->line()},
                                 {"column", error->column()},
                                 {"position", error->position()},
                                 {"length", error->length()},
                                 {"reason", utf8(error->reason())}});
        }
        const bool valid = deck.document->isValidXML();
        nlohmann::ordered_json entry = {
            {"file", deck.file}, {"valid", valid}, {"errors", std::move(errorList)}};
        nlohmann::ordered_json notes = nlohmann::ordered_json::array();
        for (const Note& note : deck.notes) {
            notes.push_back(
                {{"line", note.line}, {"column", note.column}, {"reason", note.reason}});
        }
        entry["notes"] = std::move(notes);
        if (const std::optional<Switched> result = switchOf(deck)) {
            entry["views"] = nameOf(result->outcome);
            if (result->outcome == Switched::Outcome::Lost) {
                entry["lost"] = {
                    {"line", result->line}, {"column", result->column}, {"reason", result->reason}};
            }
        }
        m_decks.push_back(std::move(entry));
    }

    void end(const std::vector<Session::Unread>& unread) override {
        nlohmann::ordered_json report = {
            {"decks", std::move(m_decks)}, {"invalid", invalid}, {"errorCount", errors}};
        if (views) {
            report["views"] = {{"switched", switched},
                               {"notWellFormed", notShown},
                               {"otherEncoding", otherEncoding},
                               {"lost", lost}};
        }
        report["unreadable"] = nlohmann::ordered_json::array();
        for (const auto& [file, why] : unread) {
            report["unreadable"].push_back({{"file", file}, {"reason", why}});
        }
        m_printer.out() << report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
                        << '\n';
    }

private:
    const Printer& m_printer;
    nlohmann::ordered_json m_decks = nlohmann::ordered_json::array();
};

ExitStatus run(const std::vector<std::string>& paths, const std::string& inputName, bool views,
               Report& report) {
    Session session(inputName);
    report.views = views;
    session.visitDecks(paths, [&](const Deck& deck) { report.deck(deck); });
    report.end(session.unread());
    if (report.invalid > 0 || report.lost > 0) {
        session.raiseStatus(ExitStatus::Invalid);
    }
    return session.status();
}

} // namespace

ExitStatus check(const std::vector<std::string>& paths, const std::string& inputName, bool views,
                 bool json, const Printer& printer) {
    if (json) {
        JsonReport report(printer);
        return run(paths, inputName, views, report);
    }
    TextReport report(printer);
    return run(paths, inputName, views, report);
}

} // namespace cli
