#pragma once

#include "ravikit/xml/Parser.h"
#include "ravikit/xml/Tree.h"
#include "ravikit/xml/declarations/Declarations.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace ravikit {

/// What a reference to an entity comes to.
struct Expansion {
    enum class State : std::uint8_t { Unread, Reading, Read };
    State state = State::Unread;

    /// Why there may be no such reference; `reason` is empty if there may.
    ProblemKind kind = ProblemKind::BadReference;
    std::u16string reason;
    /// The fault is in the entity's own text, not in the reference.
    bool inside = false;
    /// The fault was reported at an earlier reference.
    bool reported = false;

    std::uint64_t units = 0; ///< what the reference expands to
    Entity entity;
};

/// The general entities that a text can refer to. Each is read once, when first referred to.
class Entities {
public:
    Entities(const Declarations* known, const Limits& limits)
        : m_known(known)
        , m_limits(limits) {}

    /// Takes what the text's own DOCTYPE declares, which goes before what is known otherwise.
    /// `closed`: nothing that was not read can declare any more.
    void declare(const Declarations* own, bool closed);

    const Declarations* known() const { return m_known; }

    /// Of a reference to `name` in content: the replacement text must be content by itself.
    Expansion& inContent(std::u16string_view name);

    /// Of a reference to `name` in an attribute's value.
    Expansion& inValue(std::u16string_view name);

private:
    enum class Place : std::uint8_t { Content, Value };

    Expansion& expand(std::u16string_view name, Place place);
    const EntityDeclaration* find(const std::u16string& name) const;
    bool refuse(Expansion& expansion, const EntityDeclaration* declaration,
                std::u16string_view name, Place place) const;
    void readContent(Expansion& expansion, const EntityDeclaration& declaration);
    void readValue(Expansion& expansion, const EntityDeclaration& declaration);
    void readValueReference(Expansion& expansion, std::u16string_view reference);

    const Declarations* m_known;
    const Declarations* m_own = nullptr;
    Limits m_limits;
    bool m_closed = true;
    std::uint32_t m_depth = 0;
    std::uint64_t m_valueUnits = 0;
    std::map<std::u16string, Expansion> m_content;
    std::map<std::u16string, Expansion> m_value;
    Expansion m_passing; // the answer that holds only while an entity is being read
};

} // namespace ravikit
