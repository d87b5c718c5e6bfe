#include "ravikit/xml/declarations/DeclarationInput.h"

#include "ravikit/text/Chars.h"

namespace ravikit {

DeclarationInput::DeclarationInput(std::u16string_view text, std::uint32_t begin, std::uint32_t end)
    : m_levels{{text.substr(begin, end - begin), nullptr, 0, begin}}
    , m_end(end) {}

bool DeclarationInput::accept(std::u16string_view words) {
    if (!rest().starts_with(words)) {
        return false;
    }
    advance(words.size());
    return true;
}

std::u16string_view DeclarationInput::name() {
    return atEnd() || !isNameStart(codePointAt(rest(), 0)) ? std::u16string_view() : nameToken();
}

std::u16string_view DeclarationInput::nameToken() {
    const std::u16string_view from = rest();
    std::size_t length = 0;
    while (length < from.size() && isNameChar(codePointAt(from, length))) {
        length += unitsOf(codePointAt(from, length));
    }
    advance(length);
    return from.substr(0, length);
}

void DeclarationInput::enter(ParameterEntity& entity, std::uint32_t reference) {
    entity.open = true;
    m_levels.push_back({entity.replacement, &entity, ++m_lastNumber, reference});
}

bool DeclarationInput::leave() {
    if (depth() == 0) {
        return false;
    }
    m_levels.back().entity->open = false;
    m_levels.pop_back();
    return true;
}

void DeclarationInput::leaveTo(std::size_t depth) {
    while (this->depth() > depth) {
        leave();
    }
}

void DeclarationInput::stop() {
    leaveTo(0);
    advance(rest().size());
}

std::uint32_t DeclarationInput::offset() const {
    return depth() == 0 ? m_end - static_cast<std::uint32_t>(rest().size()) : m_levels[1].reference;
}

} // namespace ravikit
