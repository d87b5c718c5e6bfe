#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ravikit {

/// What is wrong with a text, by kind. The numbers are part of the interface and stay.
enum class ProblemKind : std::uint16_t {
    // 100 and up: the text is not well-formed XML.
    NotWellFormed = 100,
    BadCharacter = 101,
    BadName = 102,
    BadTag = 103,
    BadAttribute = 104,
    DuplicateAttribute = 105,
    UnclosedElement = 106,
    StrayEndTag = 107,
    BadReference = 108,
    UnknownEntity = 109,
    RecursiveEntity = 110,
    ExternalEntity = 111,
    BadComment = 112,
    BadCData = 113,
    BadProcessingInstruction = 114,
    BadXmlDeclaration = 115,
    BadDoctype = 116,
    BadDeclaration = 117,
    NoRoot = 118,
    TextOutsideRoot = 119,
    UnreadableEncoding = 120,
    // 200 and up: a limit was reached.
    TooLarge = 200,
    TooDeep = 201,
    TooManyProblems = 202,
    EntityTooLarge = 203,
    // 300 and up: well-formed, but not valid.
    UnknownElement = 300,
    MisplacedElement = 301,
    MisplacedText = 302,
    IncompleteContent = 303,
    UnknownAttribute = 304,
    BadAttributeValue = 305,
    MissingAttribute = 306,
    DuplicateId = 307,
    UnknownId = 308,
    WrongRoot = 309,
    // 400 and up: the text cannot be converted.
    NotConvertible = 400,
};

/// One thing that is wrong with a text: offsets in UTF-16 units from 0, `end` after the last.
struct Problem {
    ProblemKind kind = ProblemKind::NotWellFormed;
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::u16string reason;
};

/// Problems in the order in which they were found. After `limit` of them one TooManyProblems
/// closes the list, so that hostile text costs bounded memory.
class Problems {
public:
    static constexpr std::size_t limit = 10000;

    void add(ProblemKind kind, std::uint32_t begin, std::uint32_t end, std::u16string reason);
    bool empty() const { return m_list.empty(); }
    bool full() const { return m_list.size() > limit; }
    const std::vector<Problem>& list() const { return m_list; }

    /// Takes back all but the first `size`.
    void truncate(std::size_t size);

    /// Brings them into the order of their places; of problems at one place the one found first
    /// stays first.
    void sort();

private:
    std::vector<Problem> m_list;
};

} // namespace ravikit
