#include "apps/cli/session/PageText.h"

#include <gumbo.h>

#include <cstring>
#include <memory>

namespace cli {

namespace {

std::string attribute(const GumboNode& node, const char* name) {
    const GumboAttribute* found = gumbo_get_attribute(&node.v.element.attributes, name);
    return found != nullptr ? found->value : "";
}

bool has(const GumboNode& node, const char* name) {
    return gumbo_get_attribute(&node.v.element.attributes, name) != nullptr;
}

bool isBlock(const GumboNode& node) {
    switch (node.v.element.tag) {
    case GUMBO_TAG_DIV:
    case GUMBO_TAG_P:
    case GUMBO_TAG_PRE:
    case GUMBO_TAG_TABLE:
    case GUMBO_TAG_TR:
    case GUMBO_TAG_FIELDSET:
    case GUMBO_TAG_LEGEND:
    case GUMBO_TAG_OPTION:
    case GUMBO_TAG_OPTGROUP:
    case GUMBO_TAG_H1:
    case GUMBO_TAG_H2:
    case GUMBO_TAG_H3:
    case GUMBO_TAG_UL:
    case GUMBO_TAG_LI:
        return true;
    default:
        return attribute(node, "style").find("display:block") != std::string::npos;
    }
}

/// Gathers the text of a tree of nodes, without recursion: a page may be nested to any depth.
class Reader {
public:
    std::string read(const GumboNode& root) {
        const GumboNode* node = &root;
        while (node != nullptr) {
            enter(*node);
            const GumboVector* children = childrenOf(*node);
            if (children != nullptr && children->length > 0) {
                node = static_cast<const GumboNode*>(children->data[0]);
                continue;
            }
            while (node != nullptr && nextSibling(*node) == nullptr) {
                leave(*node);
                node = node == &root ? nullptr : node->parent;
            }
            if (node != nullptr) {
                leave(*node);
                node = nextSibling(*node);
            }
        }
        breakLine();
        return std::move(m_text);
    }

private:
    static const GumboVector* childrenOf(const GumboNode& node) {
        const bool hidden = node.type != GUMBO_NODE_ELEMENT ||
                            node.v.element.tag == GUMBO_TAG_SCRIPT ||
                            node.v.element.tag == GUMBO_TAG_STYLE;
        return hidden ? nullptr : &node.v.element.children;
    }

    static const GumboNode* nextSibling(const GumboNode& node) {
        if (node.parent == nullptr || node.parent->type != GUMBO_NODE_ELEMENT) {
            return nullptr;
        }
        const GumboVector& siblings = node.parent->v.element.children;
        const std::size_t next = node.index_within_parent + 1;
        return next < siblings.length ? static_cast<const GumboNode*>(siblings.data[next])
                                      : nullptr;
    }

    void enter(const GumboNode& node) {
        switch (node.type) {
        case GUMBO_NODE_TEXT:
        case GUMBO_NODE_CDATA:
        case GUMBO_NODE_WHITESPACE:
            addText(node.v.text.text);
            break;
        case GUMBO_NODE_ELEMENT:
            enterElement(node);
            break;
        default:
            break;
        }
    }

    void enterElement(const GumboNode& node) {
        const GumboTag tag = node.v.element.tag;
        if (isBlock(node)) {
            breakLine();
        }
        if (tag == GUMBO_TAG_PRE) {
            ++m_inPre;
        } else if (tag == GUMBO_TAG_BR) {
            m_text += '\n';
        } else if (tag == GUMBO_TAG_IMG && !has(node, "data-room")) {
            m_text += '[' + attribute(node, "alt") + ']';
        } else if (tag == GUMBO_TAG_INPUT) {
            const std::string value = attribute(node, "value");
            m_text += value.empty() ? "[______]" : '[' + value + ']';
        } else if (tag == GUMBO_TAG_OPTGROUP) {
            m_text += attribute(node, "label");
            breakLine();
        }
    }

    void leave(const GumboNode& node) {
        if (node.type != GUMBO_NODE_ELEMENT) {
            return;
        }
        const GumboTag tag = node.v.element.tag;
        if (tag == GUMBO_TAG_TD || tag == GUMBO_TAG_TH) {
            m_text += '\t';
        } else if (tag == GUMBO_TAG_PRE) {
            --m_inPre;
        }
        if (isBlock(node)) {
            breakLine();
        }
    }

    void addText(const char* text) {
        if (m_inPre > 0) {
            m_text += text;
            return;
        }
        for (; *text != '\0'; ++text) {
            const bool blank = std::strchr(" \t\r\n\f", *text) != nullptr;
            const bool atStart = m_text.empty() || std::strchr(" \t\n", m_text.back()) != nullptr;
            if (!blank) {
                m_text += *text;
            } else if (!atStart) {
                m_text += ' ';
            }
        }
    }

    void breakLine() {
        while (!m_text.empty() && (m_text.back() == ' ' || m_text.back() == '\t')) {
            m_text.pop_back();
        }
        if (!m_text.empty() && m_text.back() != '\n') {
            m_text += '\n';
        }
    }

    std::string m_text;
    int m_inPre = 0;
};

} // namespace

std::string pageText(const std::string& html) {
    const auto destroy = [](GumboOutput* output) {
        gumbo_destroy_output(&kGumboDefaultOptions, output);
    };
    const std::unique_ptr<GumboOutput, decltype(destroy)> page(
        gumbo_parse_with_options(&kGumboDefaultOptions, html.data(), html.size()), destroy);
    return Reader().read(*page->root);
}

} // namespace cli
