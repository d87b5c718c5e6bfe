#include "ravikit/component/ParseErrorObject.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace tessaly {

namespace {

using ravikit::Problem;
using ravikit::Problems;

/// The errors of one text, which all objects of the chain share.
class Report {
public:
    /// The line that an error stands in: its number from 1, and the offsets of its first unit, of
    /// its line end, and of the next line.
    struct Place {
        std::int32_t line = 0;
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t next = 0;
    };

    Report(std::u16string text, Problems problems)
        : m_text(std::move(text))
        , m_problems(std::move(problems)) {}

    std::size_t count() const { return m_problems.list().size(); }
    const Problem& problem(std::size_t index) const { return m_problems.list()[index]; }

    const Place& place(std::size_t index) const {
        if (m_places.empty()) {
            findPlaces();
        }
        return m_places[index];
    }

    std::u16string line(std::size_t index) const {
        const Place& line = place(index);
        return m_text.substr(line.begin, line.end - line.begin);
    }

private:
    /// One walk over the text finds all: the problems stand in the order of their places.
    void findPlaces() const {
        m_places.reserve(count());
        Place line = lineBehind({});
        for (const Problem& problem : m_problems.list()) {
            while (line.next <= problem.begin && line.end < m_text.size()) {
                line = lineBehind(line);
            }
            m_places.push_back(line);
        }
    }

    /// A line ends at CR LF, LF or CR.
    Place lineBehind(const Place& line) const {
        const std::size_t end = std::min(m_text.find_first_of(u"\r\n", line.next), m_text.size());
        const bool two = m_text.compare(end, 2, u"\r\n") == 0;
        return {line.line + 1, line.next, end, std::min(end + (two ? 2 : 1), m_text.size())};
    }

    std::u16string m_text;
    Problems m_problems;
    mutable std::vector<Place> m_places; ///< found at first use
};

class ParseErrorObject : public ParseError {
public:
    ParseErrorObject(std::shared_ptr<const Report> report, std::size_t index)
        : m_report(std::move(report))
        , m_index(index) {}

    std::int32_t number() const override { return static_cast<std::int32_t>(problem().kind); }
    std::int32_t line() const override { return m_report->place(m_index).line; }
    std::int32_t column() const override {
        return static_cast<std::int32_t>(problem().begin - m_report->place(m_index).begin + 1);
    }
    std::int32_t position() const override { return static_cast<std::int32_t>(problem().begin); }
    std::int32_t length() const override {
        return static_cast<std::int32_t>(problem().end - problem().begin);
    }
    std::u16string sourceLine() const override { return m_report->line(m_index); }
    std::u16string reason() const override { return problem().reason; }

    std::shared_ptr<ParseError> next() const override {
        return m_index + 1 < m_report->count()
                   ? std::make_shared<ParseErrorObject>(m_report, m_index + 1)
                   : nullptr;
    }

private:
    const Problem& problem() const { return m_report->problem(m_index); }

    std::shared_ptr<const Report> m_report;
    std::size_t m_index;
};

} // namespace

std::shared_ptr<ParseError> makeParseError(std::u16string text, Problems problems) {
    return std::make_shared<ParseErrorObject>(
        std::make_shared<const Report>(std::move(text), std::move(problems)), 0);
}

} // namespace tessaly
