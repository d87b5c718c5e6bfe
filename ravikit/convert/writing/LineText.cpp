#include "ravikit/convert/writing/LineText.h"

#include "ravikit/text/Chars.h"

namespace ravikit {

void LineText::copy(std::u16string_view slice, Tree::Id section, Tree::Id endSection) {
    if (section != m_section) {
        m_text += m_section != 0 ? u"]]>" : u"";
        m_text += section != 0 ? u"<![CDATA[" : u"";
    }
    m_text += slice;
    m_section = endSection;
}

bool LineText::writeInSection(std::u16string_view characters) {
    if (m_section == 0) {
        return false;
    }
    for (std::size_t at = 0; at < characters.size(); at += unitsOf(codePointAt(characters, at))) {
        // `>` could end the section together with what is there or comes next.
        if (characters[at] == u'>' || !isChar(codePointAt(characters, at))) {
            return false;
        }
    }
    m_text += characters;
    return true;
}

std::u16string LineText::take() {
    copy({}, 0, 0);
    return std::exchange(m_text, {});
}

} // namespace ravikit
