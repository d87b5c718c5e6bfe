#include "ravikit/convert/MergerCore.h"
#include "ravikit/html/Style.h"
#include "ravikit/text/Chars.h"

#include <algorithm>

namespace ravikit {

namespace {

constexpr bool isHeading(PageTag tag) {
    return tag >= PageTag::H1 && tag <= PageTag::H6;
}

std::u16string attributeText(std::u16string_view name, std::u16string_view value) {
    std::u16string text = u' ' + std::u16string(name) + u"=\"";
    appendCharacters(text, value, true);
    return text + u'"';
}

bool isNmToken(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); i += unitsOf(codePointAt(text, i))) {
        if (!isNameChar(codePointAt(text, i))) {
            return false;
        }
    }
    return !text.empty();
}

} // namespace

/// Begins an element that the source doesn't know.
void Merger::openSoft(std::uint32_t node) {
    const PageTag tag = m_page[node].tag;
    const std::uint32_t effects =
        m_page[node].attributes == 0 && tag != PageTag::Center ? 0 : pageEffects(m_page, node);
    Soft soft;
    if (!openTablePart(node, soft)) {
        if (isBlockTag(tag)) {
            openBlock(node, soft, effects);
        } else {
            openInline(node, soft);
        }
    }
    addFormats(effects, soft);
    m_soft.push_back(std::move(soft));
}

void Merger::closeSoft() {
    Soft soft = std::move(m_soft.back());
    m_soft.pop_back();
    bool isWritten = true;
    for (; !soft.handles.empty(); soft.handles.pop_back()) {
        isWritten = m_writer.close(soft.handles.back());
    }
    if (!isWritten) {
        writeText(soft.label);
    }
    if (soft.isList) {
        m_lists.pop_back();
    }
    if (soft.isBlock) {
        soft.outer.isCopy = soft.outer.source != Tree::none || soft.outer.isCopy;
        m_writer.breakParagraph(std::move(soft.outer));
    }
}

/// A table, a row, a cell, a choice or preformatted text, where WML can have one.
bool Merger::openTablePart(std::uint32_t node, Soft& soft) {
    const PageTag tag = m_page[node].tag;
    Opening opening;
    switch (tag) {
    case PageTag::Table:
        opening.element = Element::Table;
        opening.tag = u"<table columns=\"";
        for (const char c : std::to_string(columnsOf(node))) {
            opening.tag += static_cast<char16_t>(c);
        }
        opening.tag += u"\">";
        break;
    case PageTag::Tr:
        opening.element = Element::Tr;
        break;
    case PageTag::Td:
    case PageTag::Th:
        opening.element = Element::Td;
        break;
    case PageTag::Select:
        opening.element = Element::Select;
        break;
    case PageTag::Optgroup:
        opening.element = Element::Optgroup;
        opening.tag = u"<optgroup" + attributeText(u"title", shownOnPage(m_page, node)) + u'>';
        break;
    case PageTag::Option:
        opening.element = Element::Option;
        break;
    case PageTag::Pre:
        opening.element = Element::Pre;
        break;
    default:
        return false;
    }
    const bool isNested = tag == PageTag::Table && m_writer.isInside(Element::Table);
    const DeckWriter::Handle handle = isNested ? 0 : m_writer.openStructure(std::move(opening));
    if (handle == 0) {
        writeText(shownOnPage(m_page, node));
        return false;
    }
    soft.handles.push_back(handle);
    soft.label = shownOnPage(m_page, node);
    if (tag == PageTag::Th) {
        addFormat(Element::B, soft);
    }
    return true;
}

/// The cells of the longest row.
std::uint32_t Merger::columnsOf(std::uint32_t table) const {
    std::uint32_t most = 1;
    std::uint32_t cells = 0;
    for (std::uint32_t node = table + 1; node < m_page[table].next;) {
        const PageTag tag = m_page[node].tag;
        if (tag == PageTag::Tr) {
            cells = 0;
        }
        if (tag == PageTag::Td || tag == PageTag::Th) {
            most = std::max(most, ++cells);
        }
        const bool goesInto = tag == PageTag::Tbody || tag == PageTag::Tr;
        node = goesInto ? node + 1 : m_page[node].next;
    }
    return most;
}

void Merger::openBlock(std::uint32_t node, Soft& soft, std::uint32_t effects) {
    const PageTag tag = m_page[node].tag;
    soft.isBlock = true;
    soft.outer = m_writer.paragraph();
    Paragraph next{.align = soft.outer.align};
    if ((effects & AlignBits) != 0) {
        next.align = effects & AlignBits;
    }
    m_writer.breakParagraph(std::move(next));
    if (isHeading(tag)) {
        addFormat(Element::B, soft);
        if (tag <= PageTag::H2) {
            addFormat(Element::Big, soft);
        }
    } else if (tag == PageTag::Ul || tag == PageTag::Ol) {
        soft.isList = true;
        m_lists.push_back({.isNumbered = tag == PageTag::Ol});
    } else if (tag == PageTag::Li) {
        const bool isNumbered = !m_lists.empty() && m_lists.back().isNumbered;
        std::u16string prefix = u"- ";
        if (isNumbered) {
            const std::string number = std::to_string(++m_lists.back().count);
            prefix = std::u16string(number.begin(), number.end()) + u". ";
        }
        m_writer.text(prefix, false);
    }
}

void Merger::openInline(std::uint32_t node, Soft& soft) {
    const PageTag tag = m_page[node].tag;
    if (const Element format = formatOf(tag); format != Element::Unknown) {
        addFormat(format, soft);
    } else if (tag == PageTag::Ins) {
        addFormat(Element::U, soft);
    } else if (tag == PageTag::A) {
        const std::u16string_view href = trimmed(m_page.value(node, u"href"));
        const bool isScript = sameWord(href.substr(0, 11), u"javascript:");
        if (!href.empty() && !isScript) {
            soft.handles.push_back(m_writer.openLink(
                {.element = Element::A, .tag = u"<a" + attributeText(u"href", href) + u'>'}));
        } else if (isScript) {
            drop(u"a link to a script");
        }
    } else if (tag == PageTag::Img) {
        writePicture(node);
    } else if (tag == PageTag::Input) {
        writeInput(node);
    }
}

void Merger::addFormats(std::uint32_t effects, Soft& soft) {
    if ((effects & AllNormal) != 0) {
        soft.handles.push_back(m_writer.openWithout(effects & AllNormal));
    }
    if ((effects & Bold) != 0) {
        addFormat(Element::B, soft);
    }
    if ((effects & Italic) != 0) {
        addFormat(Element::I, soft);
    }
    if ((effects & Underlined) != 0) {
        addFormat(Element::U, soft);
    }
    if ((effects & Larger) != 0) {
        addFormat(Element::Big, soft);
    } else if ((effects & Smaller) != 0) {
        addFormat(Element::Small, soft);
    }
}

void Merger::addFormat(Element element, Soft& soft) {
    if (const auto handle = m_writer.openFormat({.element = element}); handle != 0) {
        soft.handles.push_back(handle);
    }
}

void Merger::writePicture(std::uint32_t node) {
    const std::u16string_view alt = m_page.value(node, u"alt");
    const std::u16string_view src = trimmed(m_page.value(node, u"src"));
    const std::u16string markup =
        u"<img" + attributeText(u"alt", alt) + attributeText(u"src", src) + u"/>";
    if (src.empty() || !m_writer.canPlace(Element::Img)) {
        if (!src.empty() || alt.empty()) {
            drop(u"a picture");
        }
        writeText(alt);
        return;
    }
    m_writer.text({}, false);
    m_writer.leaf(Element::Img, markup, Tree::none);
}

void Merger::writeInput(std::uint32_t node) {
    const std::u16string_view type = m_page.value(node, u"type");
    const std::u16string_view name = m_page.value(node, u"name");
    const std::u16string_view value = m_page.value(node, u"value");
    const bool isPassword = sameWord(type, u"password");
    const bool isText = type.empty() || isPassword || sameWord(type, u"text");
    if (!isText || !isNmToken(name) || !m_writer.canPlace(Element::Input)) {
        drop(isText ? u"an `input` without a name, or where none can stand"
                    : u"an `input` of type `" + std::u16string(type) + u'`');
        const bool isWithoutText =
            sameWord(type, u"hidden") || sameWord(type, u"checkbox") || sameWord(type, u"radio");
        writeText(isWithoutText ? std::u16string_view() : value);
        return;
    }
    std::u16string markup = u"<input" + attributeText(u"name", name);
    markup += isPassword ? u" type=\"password\"" : u"";
    markup += value.empty() ? std::u16string() : attributeText(u"value", value);
    m_writer.leaf(Element::Input, markup + u"/>", Tree::none);
}

void Merger::writeText(std::u16string_view text) {
    if (!trimmed(text).empty()) {
        m_buffer.clear();
        appendCharacters(m_buffer, text);
        m_writer.text(m_buffer, isBare());
    }
}

} // namespace ravikit
