#include "platform/page/dom/ElementKinds.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace tessaly::page {

namespace {

using Names = std::initializer_list<std::u16string_view>;

// Each list is in the order of the letters, for a binary search.
constexpr Names voidNames = {u"area",  u"base",  u"basefont", u"bgsound", u"br",    u"col",
                             u"embed", u"frame", u"hr",       u"img",     u"input", u"keygen",
                             u"link",  u"meta",  u"param",    u"source",  u"track", u"wbr"};

constexpr Names rawTextNames = {u"iframe", u"noembed", u"noframes", u"plaintext",
                                u"script", u"style",   u"xmp"};

constexpr Names blockNames = {
    u"address",  u"article",   u"aside",    u"blockquote", u"body",    u"caption",  u"center",
    u"col",      u"colgroup",  u"dd",       u"details",    u"dialog",  u"dir",      u"div",
    u"dl",       u"dt",        u"fieldset", u"figcaption", u"figure",  u"footer",   u"form",
    u"frameset", u"h1",        u"h2",       u"h3",         u"h4",      u"h5",       u"h6",
    u"head",     u"header",    u"hgroup",   u"hr",         u"html",    u"legend",   u"li",
    u"listing",  u"main",      u"menu",     u"nav",        u"ol",      u"optgroup", u"option",
    u"p",        u"plaintext", u"pre",      u"search",     u"section", u"summary",  u"table",
    u"tbody",    u"td",        u"tfoot",    u"th",         u"thead",   u"tr",       u"ul",
    u"xmp"};

constexpr Names textlessNames = {u"col",   u"colgroup", u"dir",   u"dl", u"frameset",
                                 u"head",  u"html",     u"menu",  u"ol", u"table",
                                 u"tbody", u"tfoot",    u"thead", u"tr", u"ul"};

constexpr Names apartNames = {u"audio",   u"canvas",   u"datalist", u"head",     u"iframe",
                              u"noembed", u"noframes", u"noscript", u"optgroup", u"option",
                              u"script",  u"select",   u"style",    u"template", u"textarea",
                              u"title",   u"video"};

constexpr Names paragraphNames = {u"address", u"center", u"dd", u"div", u"dt", u"h1", u"h2",
                                  u"h3",      u"h4",     u"h5", u"h6",  u"li", u"p",  u"pre"};

constexpr Names unseenNames = {
    u"area",  u"audio",    u"base",     u"canvas",   u"datalist", u"head", u"iframe", u"link",
    u"meta",  u"noembed",  u"noframes", u"noscript", u"param",    u"rp",   u"script", u"source",
    u"style", u"template", u"textarea", u"title",    u"track",    u"video"};

constexpr bool isInOrder(const Names& names) {
    return std::is_sorted(names.begin(), names.end());
}

static_assert(isInOrder(voidNames) && isInOrder(rawTextNames) && isInOrder(blockNames) &&
              isInOrder(textlessNames) && isInOrder(apartNames) && isInOrder(paragraphNames) &&
              isInOrder(unseenNames));

bool isOneOf(const Node& element, const Names& names) {
    return element.isElement() && !element.foreign &&
           std::binary_search(names.begin(), names.end(), std::u16string_view(element.text));
}

} // namespace

bool isVoid(const Node& element) {
    return isOneOf(element, voidNames);
}

bool holdsRawText(const Node& element) {
    return isOneOf(element, rawTextNames);
}

bool isBlock(const Node& element) {
    return isOneOf(element, blockNames);
}

bool holdsNoText(const Node& element) {
    return isOneOf(element, textlessNames);
}

bool isApartFromFlow(const Node& element) {
    return isOneOf(element, apartNames);
}

bool isParagraph(const Node& element) {
    return isOneOf(element, paragraphNames);
}

bool isUnseenByName(const Node& element) {
    return isOneOf(element, unseenNames);
}

} // namespace tessaly::page
