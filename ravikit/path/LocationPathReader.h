#pragma once

#include "ravikit/path/LocationPath.h"

#include <string>
#include <string_view>

namespace ravikit {

/// Reads the text of a location path into its compiled form.
class LocationPathReader {
public:
    LocationPathReader(std::u16string_view pattern, LocationPath& path, std::u16string& reason)
        : m_text(pattern)
        , m_path(path)
        , m_reason(reason) {}

    /// False if the text is no location path that is understood; the reason then says why.
    bool read();

private:
    using Step = LocationPath::Step;
    using Predicate = LocationPath::Predicate;

    bool readAlternative();
    bool readStep(bool fromDescendants);
    bool readNameTest(Step& step);
    bool readPredicate(Step& step);
    bool readAttributePredicate(Predicate& predicate);
    bool readLiteral(std::u16string& value);
    bool readName(std::u16string& name);
    bool readNamePart();

    void skipBlanks();
    bool at(std::u16string_view token) const { return m_text.substr(m_at, token.size()) == token; }
    bool take(std::u16string_view token);
    bool fail(std::u16string_view expected);

    std::u16string_view m_text;
    std::size_t m_at = 0;
    LocationPath& m_path;
    std::u16string& m_reason;
};

} // namespace ravikit
