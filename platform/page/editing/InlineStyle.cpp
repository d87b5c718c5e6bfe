#include "platform/page/editing/InlineStyle.h"

#include "platform/page/dom/StyleAttribute.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace tessaly::page {

namespace {

constexpr int normalSize = 3;
constexpr int largestSize = 7;

std::u16string_view propertyOf(InlineStyle style) {
    switch (style) {
    case InlineStyle::Bold:
        return u"font-weight";
    case InlineStyle::Italic:
        return u"font-style";
    case InlineStyle::Underline:
        return u"text-decoration";
    default:
        return u"font-size";
    }
}

/// Elements whose one meaning is the style.
bool isTagOf(const Node& element, InlineStyle style) {
    switch (style) {
    case InlineStyle::Bold:
        return element.is(u"b") || element.is(u"strong");
    case InlineStyle::Italic:
        return element.is(u"i") || element.is(u"em");
    case InlineStyle::Underline:
        return element.is(u"u");
    default:
        return false;
    }
}

bool isHeading(const Node& element) {
    return element.isElement() && !element.foreign && element.text.size() == 2 &&
           element.text[0] == u'h' && element.text[1] >= u'1' && element.text[1] <= u'6';
}

std::optional<int> valueByNature(const Node& element, InlineStyle style) {
    switch (style) {
    case InlineStyle::Bold:
        return isHeading(element) || element.is(u"th") ? std::optional(1) : std::nullopt;
    case InlineStyle::Italic:
        return element.is(u"cite") || element.is(u"dfn") || element.is(u"var") ||
                       element.is(u"address")
                   ? std::optional(1)
                   : std::nullopt;
    case InlineStyle::FontSize:
        return isHeading(element) || element.is(u"big") || element.is(u"small")
                   ? std::optional(otherSize)
                   : std::nullopt;
    default:
        return std::nullopt;
    }
}

bool isNumber(std::u16string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
}

std::optional<int> sizeOfProperty(std::u16string_view text) {
    constexpr std::array<std::u16string_view, 6> words = {u"x-small", u"small",   u"medium",
                                                          u"large",   u"x-large", u"xx-large"};
    const auto found = std::find(words.begin(), words.end(), text);
    return found == words.end() ? otherSize : static_cast<int>(found - words.begin()) + 1;
}

std::optional<int> valueOfProperty(std::u16string_view text, InlineStyle style) {
    if (text.empty() || text == u"inherit") {
        return std::nullopt;
    }
    switch (style) {
    case InlineStyle::Bold:
        return text == u"bold" || text == u"bolder" ||
               (isNumber(text) && (text.size() > 3 || text >= u"600"));
    case InlineStyle::Italic:
        return text == u"italic" || text.starts_with(u"oblique");
    case InlineStyle::Underline:
        return text.find(u"underline") != std::u16string_view::npos;
    default:
        return sizeOfProperty(text);
    }
}

/// The `size` of a `font`: a number, or a step up or down from the normal one.
std::optional<int> sizeOfFont(const Node& element) {
    const std::u16string* const size =
        element.is(u"font") ? findAttribute(element, u"size") : nullptr;
    if (size == nullptr || size->empty()) {
        return std::nullopt;
    }
    const char16_t sign = size->front();
    const std::u16string_view digits =
        std::u16string_view(*size).substr(sign == u'+' || sign == u'-' ? 1 : 0);
    if (!isNumber(digits)) {
        return std::nullopt;
    }
    const int number = digits.size() > 1 ? largestSize : digits.front() - u'0';
    const int wanted = sign == u'+'   ? normalSize + number
                       : sign == u'-' ? normalSize - number
                                      : number;
    return std::clamp(wanted, 1, largestSize);
}

std::u16string_view overrideOf(InlineStyle style) {
    return style == InlineStyle::Bold ? u"font-weight: normal" : u"font-style: normal";
}

} // namespace

int initialValue(InlineStyle style) {
    return style == InlineStyle::FontSize ? normalSize : 0;
}

std::optional<int> valueGivenBy(const Node& element, InlineStyle style) {
    if (!element.isElement()) {
        return std::nullopt;
    }
    if (const auto value = valueOfProperty(styleProperty(element, propertyOf(style)), style)) {
        return value;
    }
    if (isTagOf(element, style)) {
        return 1;
    }
    if (const auto size = sizeOfFont(element); size && style == InlineStyle::FontSize) {
        return size;
    }
    return valueByNature(element, style);
}

bool canDropStyle(const Node& element, InlineStyle style) {
    return isTagOf(element, style) || !styleProperty(element, propertyOf(style)).empty() ||
           (style == InlineStyle::FontSize && sizeOfFont(element));
}

Node& carrierOf(Dom& dom, const Node& element, InlineStyle style) {
    const bool isFont = style == InlineStyle::FontSize && sizeOfFont(element);
    Node& carrier =
        dom.newElement(isTagOf(element, style) || isFont ? element.text : std::u16string(u"span"));
    if (isFont) {
        writeAttribute(carrier, u"size", *findAttribute(element, u"size"));
    }
    if (const std::u16string value = styleProperty(element, propertyOf(style)); !value.empty()) {
        writeAttribute(carrier, u"style", std::u16string(propertyOf(style)) + u": " + value);
    }
    return carrier;
}

void dropStyle(Dom& dom, Node& element, InlineStyle style) {
    dropStyleProperty(element, propertyOf(style));
    const bool wasTag = isTagOf(element, style);
    if (wasTag) {
        element.text = u"span";
    } else if (style == InlineStyle::FontSize && element.is(u"font")) {
        dropAttribute(element, u"size");
    }
    const bool meansNothing = wasTag || element.is(u"span") || element.is(u"font");
    if (meansNothing && element.attributes.empty()) {
        dom.unwrap(element);
    }
}

Node* newCarrier(Dom& dom, InlineStyle style, int value) {
    if (style == InlineStyle::FontSize) {
        Node& font = dom.newElement(u"font");
        writeAttribute(font, u"size", std::u16string(1, static_cast<char16_t>(u'0' + value)));
        return &font;
    }
    if (value == 1) {
        return &dom.newElement(style == InlineStyle::Bold     ? u"b"
                               : style == InlineStyle::Italic ? u"i"
                                                              : u"u");
    }
    if (style == InlineStyle::Underline) {
        return nullptr;
    }
    Node& span = dom.newElement(u"span");
    writeAttribute(span, u"style", overrideOf(style));
    return &span;
}

} // namespace tessaly::page
