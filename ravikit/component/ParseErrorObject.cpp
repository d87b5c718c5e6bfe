#include "ravikit/component/ParseErrorObject.h"

#include "ravikit/text/Lines.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace tessaly {

namespace {

using ravikit::Lines;
using ravikit::Problem;
using ravikit::Problems;

/// The errors of one text, which all objects of the chain share.
class Report {
public:
    Report(std::u16string text, Problems problems)
        : m_text(std::move(text))
        , m_problems(std::move(problems)) {}
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;
    Report(Report&&) = delete;
    Report& operator=(Report&&) = delete;
    ~Report() = default;

    std::size_t count() const { return m_problems.list().size(); }
    const Problem& problem(std::size_t index) const { return m_problems.list()[index]; }

    /// Not every host asks for lines.
    const Lines& lines() { return m_lines ? *m_lines : m_lines.emplace(m_text); }

private:
    std::u16string m_text;
    Problems m_problems;
    std::optional<Lines> m_lines;
};

class ParseErrorObject : public ParseError {
public:
    ParseErrorObject(std::shared_ptr<Report> report, std::size_t index)
        : m_report(std::move(report))
        , m_index(index) {}

    std::int32_t number() const override { return static_cast<std::int32_t>(problem().kind); }
    std::int32_t line() const override { return static_cast<std::int32_t>(place().line); }
    std::int32_t column() const override { return static_cast<std::int32_t>(place().column); }
    std::int32_t position() const override { return static_cast<std::int32_t>(problem().begin); }
    std::int32_t length() const override {
        return static_cast<std::int32_t>(problem().end - problem().begin);
    }
    std::u16string sourceLine() const override {
        return std::u16string(m_report->lines().lineAt(problem().begin));
    }
    std::u16string reason() const override { return problem().reason; }

    std::shared_ptr<ParseError> next() const override {
        return m_index + 1 < m_report->count()
                   ? std::make_shared<ParseErrorObject>(m_report, m_index + 1)
                   : nullptr;
    }

private:
    const Problem& problem() const { return m_report->problem(m_index); }
    ravikit::LineColumn place() const { return m_report->lines().at(problem().begin); }

    std::shared_ptr<Report> m_report;
    std::size_t m_index;
};

} // namespace

std::shared_ptr<ParseError> makeParseError(std::u16string text, Problems problems) {
    return std::make_shared<ParseErrorObject>(
        std::make_shared<Report>(std::move(text), std::move(problems)), 0);
}

} // namespace tessaly
