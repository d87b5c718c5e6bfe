#include "apps/cli/Commands.h"
#include "apps/cli/ViewCheck.h"

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
    std::size_t lost = 0; ///< decks that did not come back from the page as they were

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

    /// Nothing too where nobody asked, and for a deck that is not well-formed.
    std::optional<Loss> lossOf(const Deck& deck) {
        if (!views || deck.document->DOM()->xml().empty()) {
            return std::nullopt;
        }
        std::optional<Loss> loss = switchThereAndBack(deck);
        if (loss) {
            ++lost;
        }
        return loss;
    }
};

class TextReport : public Report {
public:
    explicit TextReport(const Printer& printer)
        : m_printer(printer) {}

    void deck(const Deck& deck) override {
        count(deck);
        for (Error error = firstError(deck); error; error = error->next()) {
            line(deck.file, *error);
        }
        if (const std::optional<Loss> loss = lossOf(deck)) {
            place(deck.file, loss->line, loss->column, loss->reason);
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
            m_printer.out() << (lost == 0 ? "no deck lost a byte on the way to the page and back"
                                          : counted(lost, "deck") +
                                                " did not come back from the page whole")
                            << '\n';
        }
    }

private:
    static std::string counted(std::size_t count, const std::string& what) {
        return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
    }

    void place(const std::string& file, std::size_t line, std::size_t column,
               const std::string& reason) const {
        const std::string where =
            file + ':' + std::to_string(line) + ':' + std::to_string(column) + ':';
        m_printer.out() << m_printer.styled(Style::Strong, where) << ' '
                        << m_printer.styled(Style::Error, "error:") << ' '
                        << m_printer.styled(Style::Plain, reason) << '\n';
    }

    void line(const std::string& file, tessaly::ParseError& error) const {
        const auto column = static_cast<std::size_t>(error.column());
        place(file, static_cast<std::size_t>(error.line()), column, utf8(error.reason()));
        if (m_printer.rich()) {
            m_printer.snippet(error.sourceLine(), column);
        }
    }

    const Printer& m_printer;
};

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
        if (const std::optional<Loss> loss = lossOf(deck)) {
            entry["lost"] = {
                {"line", loss->line}, {"column", loss->column}, {"reason", loss->reason}};
        }
        m_decks.push_back(std::move(entry));
    }

    void end(const std::vector<Session::Unread>& unread) override {
        nlohmann::ordered_json unreadList = nlohmann::ordered_json::array();
        for (const auto& [file, why] : unread) {
            unreadList.push_back({{"file", file}, {"reason", why}});
        }
        const nlohmann::ordered_json report = {{"decks", std::move(m_decks)},
                                               {"invalid", invalid},
                                               {"errorCount", errors},
                                               {"unreadable", std::move(unreadList)}};
        m_printer.out() << report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
                        << '\n';
    }

private:
    const Printer& m_printer;
    nlohmann::ordered_json m_decks = nlohmann::ordered_json::array();
};

ExitStatus run(const std::vector<std::string>& paths, bool views, Report& report) {
    Session session;
    report.views = views;
    for (const std::string& path : paths) {
        session.visitDecks(path, [&](const Deck& deck) { report.deck(deck); });
    }
    report.end(session.unread());
    if (report.invalid > 0 || report.lost > 0) {
        session.raiseStatus(ExitStatus::Invalid);
    }
    return session.status();
}

} // namespace

ExitStatus check(const std::vector<std::string>& paths, bool views, bool json,
                 const Printer& printer) {
    if (json) {
        JsonReport report(printer);
        return run(paths, views, report);
    }
    TextReport report(printer);
    return run(paths, views, report);
}

} // namespace cli
