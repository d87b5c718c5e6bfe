#include "ravikit/html/PageTags.h"

#include <array>

namespace ravikit {

namespace {

struct Named {
    std::u16string_view name;
    PageTag tag = PageTag::None;
    bool isVoid = false;
};

constexpr std::array named{
    Named{u"a", PageTag::A},
    Named{u"address", PageTag::OtherBlock},
    Named{u"applet", PageTag::Dropped},
    Named{u"area", PageTag::Dropped, true},
    Named{u"article", PageTag::OtherBlock},
    Named{u"aside", PageTag::OtherBlock},
    Named{u"audio", PageTag::Media},
    Named{u"b", PageTag::B},
    Named{u"base", PageTag::Dropped, true},
    Named{u"basefont", PageTag::Quiet, true},
    Named{u"bgsound", PageTag::Dropped, true},
    Named{u"big", PageTag::Big},
    Named{u"blockquote", PageTag::OtherBlock},
    Named{u"body", PageTag::Body},
    Named{u"br", PageTag::Br, true},
    Named{u"canvas", PageTag::Media},
    Named{u"caption", PageTag::Caption},
    Named{u"center", PageTag::Center},
    Named{u"col", PageTag::Quiet, true},
    Named{u"dd", PageTag::Dd},
    Named{u"details", PageTag::OtherBlock},
    Named{u"dir", PageTag::Ul},
    Named{u"div", PageTag::Div},
    Named{u"dl", PageTag::Dl},
    Named{u"dt", PageTag::Dt},
    Named{u"em", PageTag::Em},
    Named{u"embed", PageTag::Dropped, true},
    Named{u"fieldset", PageTag::OtherBlock},
    Named{u"figcaption", PageTag::OtherBlock},
    Named{u"figure", PageTag::OtherBlock},
    Named{u"font", PageTag::Font},
    Named{u"footer", PageTag::OtherBlock},
    Named{u"form", PageTag::OtherBlock},
    Named{u"frame", PageTag::Dropped, true},
    Named{u"frameset", PageTag::NeedsHtml},
    Named{u"h1", PageTag::H1},
    Named{u"h2", PageTag::H2},
    Named{u"h3", PageTag::H3},
    Named{u"h4", PageTag::H4},
    Named{u"h5", PageTag::H5},
    Named{u"h6", PageTag::H6},
    Named{u"head", PageTag::Dropped},
    Named{u"header", PageTag::OtherBlock},
    Named{u"hr", PageTag::Hr, true},
    Named{u"html", PageTag::Html},
    Named{u"i", PageTag::I},
    Named{u"iframe", PageTag::NeedsHtml},
    Named{u"image", PageTag::NeedsHtml},
    Named{u"img", PageTag::Img, true},
    Named{u"input", PageTag::Input, true},
    Named{u"ins", PageTag::Ins},
    Named{u"keygen", PageTag::Quiet, true},
    Named{u"legend", PageTag::OtherBlock},
    Named{u"li", PageTag::Li},
    Named{u"link", PageTag::Dropped, true},
    Named{u"listing", PageTag::NeedsHtml},
    Named{u"main", PageTag::OtherBlock},
    Named{u"math", PageTag::NeedsHtml},
    Named{u"menu", PageTag::Ul},
    Named{u"meta", PageTag::Dropped, true},
    Named{u"meter", PageTag::Media},
    Named{u"nav", PageTag::OtherBlock},
    Named{u"noembed", PageTag::NeedsHtml},
    Named{u"noframes", PageTag::NeedsHtml},
    Named{u"noscript", PageTag::NeedsHtml},
    Named{u"object", PageTag::Dropped},
    Named{u"ol", PageTag::Ol},
    Named{u"optgroup", PageTag::Optgroup},
    Named{u"option", PageTag::Option},
    Named{u"p", PageTag::P},
    Named{u"param", PageTag::Dropped, true},
    Named{u"plaintext", PageTag::NeedsHtml},
    Named{u"pre", PageTag::Pre},
    Named{u"progress", PageTag::Media},
    Named{u"script", PageTag::RawText},
    Named{u"section", PageTag::OtherBlock},
    Named{u"select", PageTag::Select},
    Named{u"small", PageTag::Small},
    Named{u"source", PageTag::Dropped, true},
    Named{u"span", PageTag::Span},
    Named{u"strong", PageTag::Strong},
    Named{u"style", PageTag::RawText},
    Named{u"summary", PageTag::OtherBlock},
    Named{u"svg", PageTag::NeedsHtml},
    Named{u"table", PageTag::Table},
    Named{u"tbody", PageTag::Tbody},
    Named{u"td", PageTag::Td},
    Named{u"template", PageTag::NeedsHtml},
    Named{u"textarea", PageTag::NeedsHtml},
    Named{u"tfoot", PageTag::Tbody},
    Named{u"th", PageTag::Th},
    Named{u"thead", PageTag::Tbody},
    Named{u"title", PageTag::NeedsHtml},
    Named{u"tr", PageTag::Tr},
    Named{u"track", PageTag::Dropped, true},
    Named{u"u", PageTag::U},
    Named{u"ul", PageTag::Ul},
    Named{u"video", PageTag::Media},
    Named{u"wbr", PageTag::Quiet, true},
    Named{u"xmp", PageTag::NeedsHtml},
};

constexpr char16_t lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

constexpr std::size_t placeOf(std::u16string_view name) {
    auto hash = static_cast<std::uint32_t>(name.size());
    for (const char16_t c : name) {
        hash = (hash + lower(c)) * 0x9E3779B1U;
        hash ^= hash >> 15;
    }
    return hash & 511;
}

struct Places {
    std::array<std::uint8_t, 512> at{}; ///< the number in `named`, from 1
};

constexpr Places makePlaces() {
    Places places;
    for (std::size_t i = 0; i < named.size(); ++i) {
        std::size_t at = placeOf(named[i].name);
        while (places.at[at] != 0) {
            at = (at + 1) & 511;
        }
        places.at[at] = static_cast<std::uint8_t>(i + 1);
    }
    return places;
}
constexpr Places places = makePlaces();

const Named* find(std::u16string_view name) {
    if (name.size() > 10) {
        return nullptr;
    }
    for (std::size_t at = placeOf(name); places.at[at] != 0; at = (at + 1) & 511) {
        const Named& one = named[places.at[at] - 1U];
        bool same = one.name.size() == name.size();
        for (std::size_t i = 0; same && i < name.size(); ++i) {
            same = one.name[i] == lower(name[i]);
        }
        if (same) {
            return &one;
        }
    }
    return nullptr;
}

} // namespace

KnownTag knownTag(std::u16string_view name) {
    const Named* const one = find(name);
    return one == nullptr ? KnownTag() : KnownTag{one->tag, one->isVoid};
}

} // namespace ravikit
