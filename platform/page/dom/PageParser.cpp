#include "platform/page/dom/PageParser.h"

#include "platform/files/TextCodec.h"
#include "ravikit/html/GumboGuard.h"
#include "util/Failure.h"

#include <new>
#include <string_view>
#include <utility>

namespace tessaly::page {

namespace {

std::u16string toUtf16(std::string_view bytes) {
    return decodeUtf8(bytes).value_or(std::u16string());
}

std::u16string nameOf(const GumboElement& element) {
    GumboStringPiece name = element.original_tag;
    gumbo_tag_from_original_text(&name);
    if (element.tag_namespace == GUMBO_NAMESPACE_SVG && name.length > 0) {
        if (const char* const known = gumbo_normalize_svg_tagname(&name)) {
            return toUtf16(known);
        }
    }
    if (element.tag != GUMBO_TAG_UNKNOWN) {
        return toUtf16(gumbo_normalized_tagname(element.tag));
    }
    std::u16string lower = toUtf16({name.data, name.length});
    for (char16_t& unit : lower) {
        if (unit >= u'A' && unit <= u'Z') {
            unit += u'a' - u'A';
        }
    }
    return lower;
}

std::string_view prefixOf(GumboAttributeNamespaceEnum attributeNamespace,
                          std::string_view localName) {
    switch (attributeNamespace) {
    case GUMBO_ATTR_NAMESPACE_XLINK:
        return "xlink:";
    case GUMBO_ATTR_NAMESPACE_XML:
        return "xml:";
    case GUMBO_ATTR_NAMESPACE_XMLNS:
        return localName == "xmlns" ? "" : "xmlns:";
    default:
        return "";
    }
}

Node& elementFrom(Dom& dom, const GumboElement& from) {
    Node& element = dom.newElement(nameOf(from));
    element.foreign = from.tag_namespace != GUMBO_NAMESPACE_HTML;
    for (unsigned i = 0; i < from.attributes.length; ++i) {
        const auto& attribute = *static_cast<const GumboAttribute*>(from.attributes.data[i]);
        const std::string_view prefix = prefixOf(attribute.attr_namespace, attribute.name);
        element.attributes.push_back(
            {toUtf16(prefix) + toUtf16(attribute.name), toUtf16(attribute.value)});
    }
    return element;
}

void appendText(Dom& dom, Node& parent, const char* characters) {
    if (parent.last != nullptr && parent.last->isText()) {
        parent.last->text += toUtf16(characters);
    } else {
        dom.put(dom.newText(toUtf16(characters)), parent, nullptr);
    }
}

/// Copies what stands inside `from` into `to`.
void copyChildren(Dom& dom, const GumboNode& from, Node& to) {
    std::vector<std::pair<const GumboNode*, unsigned>> open{{&from, 0}};
    Node* parent = &to;
    while (!open.empty()) {
        auto& [at, position] = open.back();
        if (position == at->v.element.children.length) {
            open.pop_back();
            parent = parent->parent;
            continue;
        }
        const auto& child = *static_cast<const GumboNode*>(at->v.element.children.data[position++]);
        if (child.type == GUMBO_NODE_ELEMENT || child.type == GUMBO_NODE_TEMPLATE) {
            Node& element = elementFrom(dom, child.v.element);
            dom.put(element, *parent, nullptr);
            open.emplace_back(&child, 0);
            parent = &element;
        } else if (child.type == GUMBO_NODE_COMMENT) {
            dom.put(dom.newComment(toUtf16(child.v.text.text)), *parent, nullptr);
        } else if (child.type != GUMBO_NODE_DOCUMENT) {
            appendText(dom, *parent, child.v.text.text);
        }
    }
}

/// `html`, which is UTF-8 and stays alive as long as the answer, as the content of a `context`.
ravikit::GumboGuard read(std::string_view html, GumboTag context) {
    try {
        return {html, context, GUMBO_NAMESPACE_HTML};
    } catch (const ravikit::PageTooCostly&) {
        throw Failure(FailureCode::InvalidArgument, u"The page is nested too deeply");
    } catch (const std::bad_alloc&) {
        throw Failure(FailureCode::OutOfMemory);
    }
}

} // namespace

Node& parsePage(Dom& dom, const std::u16string& html) {
    const std::string bytes = encodeUtf8(html);
    const ravikit::GumboGuard parsed = read(bytes, GUMBO_TAG_LAST);
    Node& root = elementFrom(dom, parsed.root().v.element);
    copyChildren(dom, parsed.root(), root);
    return root;
}

Node& parseFragment(Dom& dom, const std::u16string& html, const Node& context) {
    const std::string bytes = encodeUtf8(html);
    GumboTag tag = gumbo_tag_enum(encodeUtf8(context.text).c_str());
    if (tag >= GUMBO_TAG_UNKNOWN || context.foreign) {
        tag = GUMBO_TAG_DIV; // elements that the parser does not know behave like one
    }
    const ravikit::GumboGuard parsed = read(bytes, tag);
    Node& holder = dom.newElement(u"html");
    copyChildren(dom, parsed.root(), holder);
    return holder;
}

} // namespace tessaly::page
