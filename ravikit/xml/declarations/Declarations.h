#pragma once

#include "ravikit/text/Problem.h"
#include "ravikit/xml/NameTable.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ravikit {

/// A content model as declared. `Name`, `PcData` are leaves; the others hold `children`.
struct ContentParticle {
    enum class Kind : std::uint8_t { Name, PcData, Sequence, Choice };
    enum class Repeat : std::uint8_t { Once, Optional, ZeroOrMore, OneOrMore };
    Kind kind = Kind::Name;
    Repeat repeat = Repeat::Once;
    std::u16string name;
    std::vector<ContentParticle> children;
};

struct ElementDeclaration {
    enum class Content : std::uint8_t { Empty, Any, Mixed, Children };
    std::u16string name;
    Content content = Content::Any;
    ContentParticle model; ///< for Mixed and Children
};

struct AttributeDeclaration {
    enum class Type : std::uint8_t {
        CData,
        Id,
        IdRef,
        IdRefs,
        Entity,
        Entities,
        NmToken,
        NmTokens,
        Notation,
        Enumeration
    };
    enum class Default : std::uint8_t { Required, Implied, Fixed, Value };
    std::u16string element;
    std::u16string name;
    Type type = Type::CData;
    std::vector<std::u16string> values; ///< of an enumeration or of notations
    Default defaultKind = Default::Implied;
    std::u16string defaultValue;
};

struct EntityDeclaration {
    std::u16string name;
    bool external = false;      ///< declared with SYSTEM or PUBLIC; never fetched
    bool unparsed = false;      ///< declared with NDATA
    std::u16string replacement; ///< of an internal one: character and parameter references resolved
};

/// All that a DTD, or a document's internal subset, declares. Of an entity or an attribute that is
/// declared twice the first declaration binds; of an element declared twice the first one stays
/// and a problem is noted by whoever judges validity.
struct Declarations {
    std::vector<ElementDeclaration> elements;
    std::vector<AttributeDeclaration> attributes;
    /// In order, not hashed: names that were made to collide must cost no more than others.
    std::map<std::u16string, EntityDeclaration> entities;
    std::vector<std::u16string> notations;
    /// If there, the names that a text most likely uses: the table of its names begins with them,
    /// which spares each text learning them again.
    std::shared_ptr<const NameTable> names;
    /// True if there is a reference to a parameter entity. More may then be declared than stands
    /// here, so that an undeclared entity is no breach of well-formedness as such.
    bool incomplete = false;
};

/// What a document says before its internal subset, and what its reader knows besides.
struct SubsetContext {
    bool external = false;   ///< the DOCTYPE names an external subset as well
    bool standalone = false; ///< the XML declaration says that nothing else matters
    const Declarations* known = nullptr;
};

/// Reads the declarations of `text[begin, end)`.
///
/// `internalSubset` applies the stricter rules for the part of a DOCTYPE between `[` and `]`
/// (parameter-entity references between declarations only, no conditional sections). What is not
/// well-formed goes to `problems` with offsets in `text`. External entities are never fetched.
/// Limits on entity nesting and size are kept with a problem, never by running on.
Declarations readDeclarations(std::u16string_view text, std::uint32_t begin, std::uint32_t end,
                              bool internalSubset, Problems& problems,
                              const SubsetContext& context = {});

/// In a DOCTYPE: the offset of the `]` that ends the internal subset which begins at `begin`, or
/// `text.size()` if none does. Literals, comments and instructions are stepped over.
std::uint32_t internalSubsetEnd(std::u16string_view text, std::uint32_t begin);

} // namespace ravikit
