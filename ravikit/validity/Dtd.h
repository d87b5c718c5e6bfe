#pragma once

#include "ravikit/xml/Tree.h"
#include "ravikit/xml/declarations/Declarations.h"

#include <memory>
#include <string>

namespace ravikit {

/// A DTD compiled for judging: content models as tables, attributes, entities. It never changes
/// and may be shared.
class Dtd {
public:
    /// Compiles the text of an external DTD. None if the text is not a well-formed DTD that
    /// declares at least one element; `problems` then says why.
    static std::shared_ptr<const Dtd> compile(const std::u16string& text, Problems& problems);

    /// The WML DTD that is built into this library, compiled at each call.
    static std::shared_ptr<const Dtd> compileBuiltIn();

    ~Dtd();
    Dtd(const Dtd&) = delete;
    Dtd& operator=(const Dtd&) = delete;
    Dtd(Dtd&&) = delete;
    Dtd& operator=(Dtd&&) = delete;

    /// The entities for the parser.
    const Declarations& declarations() const;

    /// Adds to `problems` what stands against `tree` being valid by this DTD, whatever DOCTYPE it
    /// names. Nodes that recovery had a part in are left out.
    void judge(const Tree& tree, Problems& problems) const;

private:
    struct Tables;
    explicit Dtd(std::unique_ptr<const Tables> tables);
    std::unique_ptr<const Tables> m_tables;
};

} // namespace ravikit
