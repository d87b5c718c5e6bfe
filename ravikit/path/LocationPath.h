#pragma once

#include "ravikit/xml/Tree.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravikit {

/// The nodes that a location path selects: each once, in document order.
using NodeSet = std::vector<Tree::Id>;

/// A compiled location path in the abbreviated syntax of XPath: `/`, `//`, `.`, `..`, names, `*`,
/// `@`, `|`, and the predicates `[n]` (from 1), `[@a]` and `[@a='v']`. Names are compared as
/// written, prefix included.
class LocationPath {
public:
    /// None if `pattern` is no such path; `reason` then says what stands in the way.
    static std::optional<LocationPath> compile(std::u16string_view pattern, std::u16string& reason);

    /// What the path selects from `context`. The cost of a step grows with the part of the tree
    /// that it looks at; a `..` looks at all of the tree up to the last node of its input.
    NodeSet select(const Tree& tree, Tree::Id context) const;

private:
    friend class LocationPathReader;

    struct Predicate {
        enum class Kind : std::uint8_t { Position, HasAttribute, AttributeEquals };
        Kind kind = Kind::Position;
        std::uint32_t position = 0;
        std::u16string name;
        std::u16string value;
    };

    struct Step {
        enum class Axis : std::uint8_t { Child, Attribute, Self, Parent };
        Axis axis = Axis::Child;
        bool fromDescendants = false; ///< stands after `//`
        std::u16string name;          ///< empty for `*`
        std::vector<Predicate> predicates;
    };

    struct Alternative {
        bool absolute = false;
        std::vector<Step> steps;
    };

    class Evaluation;

    std::vector<Alternative> m_alternatives;
};

} // namespace ravikit
