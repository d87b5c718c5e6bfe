#include "ravikit/convert/page/PageShapes.h"

namespace ravikit {

namespace {

namespace shapes {

constexpr Shape neutralBlock{PageTag::Div, u"<div", u"</div>"};
constexpr Shape neutral{PageTag::Span, u"<span", u"</span>"};
constexpr Shape deck{PageTag::Div, u"<div class=\"deck\"", u"</div>"};
constexpr Shape card{
    PageTag::Div,
    u"<div class=\"card\" style=\"border:1px solid #888;margin:4px;padding:4px\"",
    u"</div>",
    u"<h2 contenteditable=\"false\"><span contenteditable=\"true\" data-text=\"title\">",
    u"</span></h2>",
    PageTag::H2};
constexpr Shape paragraph{PageTag::P, u"<p", u"</p>"};
constexpr Shape preformatted{PageTag::Pre, u"<pre", u"</pre>"};
constexpr Shape table{PageTag::Table, u"<table border=\"1\"",
                      u"</table>",    u"<caption data-text=\"title\">",
                      u"</caption>",  PageTag::Caption};
constexpr Shape neutralTable{PageTag::Div, u"<div",     u"</div>", u"<div data-text=\"title\">",
                             u"</div>",    PageTag::Div};
constexpr Shape row{PageTag::Tr, u"<tr", u"</tr>"};
constexpr Shape cell{PageTag::Td, u"<td", u"</td>"};
constexpr Shape fieldset{
    PageTag::Div,
    u"<div style=\"border:1px solid #888;padding:2px\"",
    u"</div>",
    u"<h2 contenteditable=\"false\"><span contenteditable=\"true\" data-text=\"title\">",
    u"</span></h2>",
    PageTag::H2};
constexpr Shape choice{PageTag::Select, u"<select multiple=\"\"", u"</select>"};
constexpr Shape group{PageTag::Optgroup, u"<optgroup", u"</optgroup>", {}, {},
                      PageTag::None,     u"label"};
constexpr Shape option{PageTag::Option, u"<option", u"</option>"};
constexpr Shape oddChoice{PageTag::Span,
                          u"<span style=\"display:inline-block;border:1px solid #888;padding:2px\"",
                          u"</span>"};
constexpr Shape oddGroup{PageTag::Span, u"<span style=\"display:block;border-left:4px solid #ccc\"",
                         u"</span>",    u"<span data-text=\"title\" style=\"display:block\">",
                         u"</span>",    PageTag::Span};
constexpr Shape oddOption{PageTag::Span, u"<span style=\"display:block\"", u"</span>"};
constexpr Shape field{PageTag::Input, u"<input readonly=\"\"", {}, {}, {}, PageTag::None, u"value"};
constexpr Shape picture{PageTag::Img, u"<img", {}, {}, {}, PageTag::None, u"alt"};
constexpr Shape key{PageTag::Div,
                    u"<div contenteditable=\"false\" style=\"margin:2px\"",
                    u"</div>",
                    u"<span contenteditable=\"true\" data-text=\"label\" style=\"border:2px outset "
                    u"#aaa;padding:2px\">",
                    u"</span>",
                    PageTag::Span};
constexpr Shape keyInLine{PageTag::Input, u"<input type=\"button\"", {}, {}, {}, PageTag::None,
                          u"value"};
constexpr Shape link{PageTag::A, u"<a style=\"color:#0000cc;border-bottom:1px solid #0000cc\"",
                     u"</a>"};
constexpr Shape linkInLink{
    PageTag::Span, u"<span style=\"color:#0000cc;border-bottom:1px solid #0000cc\"", u"</span>"};
constexpr Shape b{PageTag::B, u"<b", u"</b>"};
constexpr Shape i{PageTag::I, u"<i", u"</i>"};
constexpr Shape u{PageTag::U, u"<u", u"</u>"};
constexpr Shape em{PageTag::Em, u"<em", u"</em>"};
constexpr Shape strong{PageTag::Strong, u"<strong", u"</strong>"};
constexpr Shape big{PageTag::Big, u"<big", u"</big>"};
constexpr Shape small{PageTag::Small, u"<small", u"</small>"};

} // namespace shapes

} // namespace

const Shape& neutralShape() {
    return shapes::neutral;
}

const Shape& shapeOf(Element element, const ShapePlace& place) {
    const bool isIrregular = place.isIrregular;
    switch (element) {
    case Element::Wml:
        return shapes::deck;
    case Element::Card:
        return shapes::card;
    case Element::P:
        return isIrregular ? shapes::neutralBlock : shapes::paragraph;
    case Element::Pre:
        return shapes::preformatted;
    case Element::Table:
        return isIrregular ? shapes::neutralTable : shapes::table;
    case Element::Tr:
        return isIrregular ? shapes::neutralBlock : shapes::row;
    case Element::Td:
        return isIrregular ? shapes::neutralBlock : shapes::cell;
    case Element::Fieldset:
        return shapes::fieldset;
    case Element::HtmlBlock:
        return shapes::neutralBlock;
    case Element::Select:
        return isIrregular ? shapes::oddChoice : shapes::choice;
    case Element::Optgroup:
        return isIrregular ? shapes::oddGroup : shapes::group;
    case Element::Option:
        return isIrregular ? shapes::oddOption : shapes::option;
    case Element::Input:
        return shapes::field;
    case Element::Img:
        return shapes::picture;
    case Element::Do:
        return place.isInLine ? shapes::keyInLine : shapes::key;
    case Element::A:
    case Element::Anchor:
        return place.isInLink ? shapes::linkInLink : shapes::link;
    case Element::B:
        return shapes::b;
    case Element::I:
        return shapes::i;
    case Element::U:
        return shapes::u;
    case Element::Em:
        return shapes::em;
    case Element::Strong:
        return shapes::strong;
    case Element::Big:
        return shapes::big;
    case Element::Small:
        return shapes::small;
    default:
        return shapes::neutral;
    }
}

} // namespace ravikit
