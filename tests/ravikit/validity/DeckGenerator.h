#pragma once

#include "ravikit/xml/declarations/Declarations.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Well-formed decks made from bytes: most are valid by the DTD or off by one fault. The same bytes
/// give the same deck; when they are used up, what is begun is brought to an end.
class DeckGenerator {
public:
    explicit DeckGenerator(const ravikit::Declarations& dtd) {
        for (const auto& element : dtd.elements) {
            m_elements[element.name] = {&element, {}};
            m_names.push_back(element.name);
        }
        for (const auto& attribute : dtd.attributes) {
            m_elements[attribute.element].attributes.push_back(&attribute);
        }
    }

    std::u16string deck(const std::uint8_t* data, std::size_t size) {
        m_at = data;
        m_end = data + size;
        m_out.clear();
        m_hasEntities = next(4) == 1;
        if (m_hasEntities) {
            m_out = u"<!DOCTYPE wml [<!ENTITY t 'text'><!ENTITY b '<br/>'><!ENTITY s ' \t'>"
                    u"<!ENTITY r '&#38;#32;'><!ENTITY o ''><!ENTITY n '&s;&b;&t;'>"
                    u"<!ENTITY p '<p>&b;<a/></p>'><!ENTITY v 'left'>]>";
        }
        element(u"wml", 0);
        return m_out;
    }

private:
    using Particle = ravikit::ContentParticle;
    using Content = ravikit::ElementDeclaration::Content;
    using Attribute = ravikit::AttributeDeclaration;

    struct Element {
        const ravikit::ElementDeclaration* declaration = nullptr;
        std::vector<const Attribute*> attributes;
    };

    std::size_t next(std::size_t choices) { return m_at == m_end ? 0 : *m_at++ % choices; }
    bool fault() { return next(64) == 1; }
    template <std::size_t n>
    std::u16string_view oneOf(const std::u16string_view (&choices)[n]) {
        return choices[next(n)];
    }

    void element(std::u16string name, int depth) {
        const Element known = m_elements[name]; // by value: what follows may add names
        if (fault()) {
            name = next(2) == 0 ? std::u16string(oneOf({u"crad", u"P", u"x", u"a:b"}))
                                : m_names[next(m_names.size())];
        }
        m_out += u'<' + name;
        for (const Attribute* const declaration : known.attributes) {
            const bool required = declaration->defaultKind == Attribute::Default::Required;
            if (required ? !fault() : next(8) == 1) {
                attribute(*declaration);
            }
        }
        if (fault()) {
            m_out += oneOf({u" colour='1'", u" xmlns='u'", u" align='left '", u" xml:id='i'"});
        }
        if (known.declaration != nullptr && known.declaration->content == Content::Empty &&
            (m_at == m_end || next(2) == 0)) {
            m_out += u"/>";
            return;
        }
        m_out += u'>';
        if (known.declaration != nullptr && depth < 40) {
            inside(*known.declaration, depth + 1);
        }
        m_out += u"</" + name + (next(8) == 1 ? u"\n>" : u">");
    }

    void attribute(const Attribute& declaration) {
        for (std::size_t i = m_out.rfind(u'<'); i < m_out.size(); ++i) {
            if (m_out.compare(i, declaration.name.size() + 2, u' ' + declaration.name + u'=') ==
                0) {
                return;
            }
        }
        const char16_t quote = next(4) == 1 ? u'\'' : u'"';
        m_out += u' ' + declaration.name + u'=' + quote;
        if (fault()) {
            m_out += oneOf({u"", u" a", u"a b", u"1 ", u"\ttrue", u"&#32;get", u"&#x6c;eft", u"-"});
        } else if (m_hasEntities && next(8) == 1) {
            m_out += u"&v;";
        } else if (!declaration.values.empty()) {
            m_out += declaration.values[next(declaration.values.size())];
        } else if (declaration.type == Attribute::Type::Id) {
            m_out += u"i" + std::u16string(1, static_cast<char16_t>(u'a' + next(26))) +
                     std::u16string(1, static_cast<char16_t>(u'0' + next(10)));
        } else {
            m_out += oneOf({u"1", u"a", u"#b", u"$(v)"}).substr(0, 1 + next(4));
        }
        m_out += quote;
    }

    void inside(const ravikit::ElementDeclaration& declaration, int depth) {
        between();
        if (declaration.content == Content::Children) {
            particle(declaration.model, depth);
        } else if (declaration.content == Content::Mixed) {
            for (std::size_t count = depth < 30 ? next(4) : 0; count > 0; --count) {
                const std::size_t child = next(declaration.model.children.size());
                if (child == 0) {
                    m_out +=
                        oneOf({u"text", u" ", u"<![CDATA[ ]]>", u"&#65;", u"&lt;", u" two words ",
                               u"\u0416\u65E5\n    ", u"$(v)&#160;<!-- k -->", u"x<?p q?>"});
                } else {
                    element(declaration.model.children[child].name, depth);
                }
            }
        }
        between();
    }

    void particle(const Particle& model, int depth) {
        using Repeat = Particle::Repeat;
        std::size_t count =
            model.repeat == Repeat::Once ? 1 : next(model.repeat == Repeat::Optional ? 2 : 4);
        count += model.repeat == Repeat::OneOrMore && count == 0 ? 1U : 0U;
        for (count += fault() ? 1U : 0U; count > 0; --count) {
            if (fault()) {
                continue;
            }
            if (model.kind == Particle::Kind::Name) {
                element(model.name, depth);
                between();
            } else if (model.kind == Particle::Kind::Choice) {
                // The last one, which leads nowhere back to itself, where there is an end to be
                // made.
                const bool last = m_at == m_end || depth > 20;
                particle(last ? model.children.back() : model.children[next(model.children.size())],
                         depth);
            } else {
                for (const Particle& child : model.children) {
                    particle(child, depth);
                }
            }
        }
    }

    /// What may stand between two children, and now and then what may not.
    void between() {
        switch (next(16)) {
        case 1:
            m_out += oneOf({u" ", u"\n", u"\r\n\t", u"<!-- c -->", u"<?pi x?>"});
            break;
        case 2:
            if (m_hasEntities) {
                m_out += oneOf({u"&s;", u"&o;", u"&n;", u"&r;", u"&b;", u"&t;", u"&p;"});
            }
            break;
        case 3:
            if (fault()) {
                m_out += oneOf({u"text", u"<![CDATA[]]>", u"&#32;", u"&amp;", u"<card/>"});
            }
            break;
        default:
            break;
        }
    }

    std::map<std::u16string, Element> m_elements;
    std::vector<std::u16string> m_names;
    const std::uint8_t* m_at = nullptr;
    const std::uint8_t* m_end = nullptr;
    std::u16string m_out;
    bool m_hasEntities = false;
};
