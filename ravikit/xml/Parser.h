#pragma once

#include "ravikit/xml/Tree.h"

#include <memory>
#include <string>

namespace ravikit {

/// What no text may exceed. Each limit ends in a problem, never in a crash or in unbounded work.
struct Limits {
    std::uint32_t units = 0x20000000;       ///< length of a text in UTF-16 units
    std::uint32_t depth = 4096;             ///< elements inside each other
    std::uint32_t entityDepth = 32;         ///< entities inside each other
    std::uint32_t entityUnits = 0x00400000; ///< what all references of a text expand to
};

/// Parses `text` into its lossless tree. Never fails: what is wrong stands in the tree's problems,
/// and the tree of broken text holds all of it too.
///
/// Well-formedness is that of XML 1.0, fifth edition. `known` are the entities that the reader
/// knows besides those that the text declares (a DTD's); none is fetched.
std::shared_ptr<const Tree> parse(std::u16string text, const Declarations* known = nullptr,
                                  const Limits& limits = {});

/// The same over a text that is not copied: it must outlive the tree, and must not change.
std::shared_ptr<const Tree> parseInPlace(const std::u16string& text,
                                         const Declarations* known = nullptr,
                                         const Limits& limits = {});

} // namespace ravikit
