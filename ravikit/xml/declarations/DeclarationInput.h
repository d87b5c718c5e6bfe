#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ravikit {

/// A parameter entity as declared.
struct ParameterEntity {
    std::u16string replacement;
    bool external = false;
    bool open = false; ///< its replacement is being read
};

/// The characters of a DTD as its declarations see them: the text itself, with the replacement of
/// a parameter entity in the place of each reference.
///
/// What is read or looked at never goes beyond the end of the innermost replacement; `leave` does.
class DeclarationInput {
public:
    /// Reads `text[begin, end)`; the text must outlive this.
    DeclarationInput(std::u16string_view text, std::uint32_t begin, std::uint32_t end);

    /// What is left of the text, or of the replacement that is being read.
    std::u16string_view rest() const { return m_levels.back().rest; }
    bool atEnd() const { return rest().empty(); }
    /// The unit ahead, or 0 at the end.
    char16_t peek(std::size_t ahead = 0) const {
        return ahead < rest().size() ? rest()[ahead] : u'\0';
    }

    void advance(std::size_t units) { m_levels.back().rest.remove_prefix(units); }
    /// Steps over `words` if they stand ahead.
    bool accept(std::u16string_view words);
    /// A Name, or an Nmtoken; empty if there is none.
    std::u16string_view name();
    std::u16string_view nameToken();

    /// Goes on with the replacement of `entity`, which must stay where it is in memory.
    /// `reference`: where the reference begins, as `offset` gives it.
    void enter(ParameterEntity& entity, std::uint32_t reference);
    /// Goes back to where the reference stood. False in the text itself.
    bool leave();
    /// Leaves replacements until at most `depth` are open.
    void leaveTo(std::size_t depth);
    /// Drops all that is left.
    void stop();

    /// How many replacements are open; 0 in the text itself.
    std::size_t depth() const { return m_levels.size() - 1; }
    /// A number that no other replacement had or will have.
    std::uint32_t level() const { return m_levels.back().number; }
    /// The place in the text; inside a replacement that of the outermost reference.
    std::uint32_t offset() const;

private:
    struct Level {
        std::u16string_view rest;
        ParameterEntity* entity;
        std::uint32_t number;
        std::uint32_t reference;
    };

    std::vector<Level> m_levels;
    std::uint32_t m_end;
    std::uint32_t m_lastNumber = 0;
};

} // namespace ravikit
