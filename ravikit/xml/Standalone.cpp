#include "ravikit/xml/Standalone.h"

#include "ravikit/text/Reference.h"
#include "ravikit/xml/declarations/Declarations.h"

namespace ravikit {

namespace {

class Writer {
public:
    explicit Writer(const Declarations& own)
        : m_own(own) {}

    /// An entity's text is written like the deck's. How deep entities nest is bounded by the
    /// parser, and so is what they come to.
    void write(const Tree& tree, Tree::Id top) {
        std::uint32_t written = tree[top].begin;
        Tree::Id attributesEnd = 0;
        for (Tree::Id id = top; id < tree[top].next; ++id) {
            if (tree.kind(id) == NodeKind::Attribute) {
                attributesEnd = tree[id].next;
            } else if (isOwn(tree, id)) {
                m_text += tree.text().substr(written, tree[id].begin - written);
                written = tree[id].end;
                if (id < attributesEnd) {
                    writeInValue(tree.referenceText(id));
                } else if (const Tree* const entity = tree.entityTree(id)) {
                    write(*entity, Tree::document);
                }
            }
        }
        m_text += tree.text().substr(written, tree[top].end - written);
    }

    std::u16string text() && { return std::move(m_text); }

private:
    bool isOwn(const Tree& tree, Tree::Id id) const {
        return tree.kind(id) == NodeKind::Reference && predefinedEntity(tree.name(id)) == 0 &&
               m_own.entities.contains(std::u16string(tree.name(id)));
    }

    void writeInValue(std::u16string_view characters) {
        for (const char16_t c : characters) {
            switch (c) {
            case u'&':
                m_text += u"&amp;";
                break;
            case u'<':
                m_text += u"&lt;";
                break;
            case u'"':
                m_text += u"&quot;";
                break;
            case u'\'':
                m_text += u"&apos;";
                break;
            default:
                m_text += c;
            }
        }
    }

    const Declarations& m_own;
    std::u16string m_text;
};

} // namespace

std::u16string standaloneText(const Tree& tree, Tree::Id id) {
    const Declarations* const own = tree.internalSubset();
    if (own == nullptr || own->entities.empty() || id == Tree::document) {
        return std::u16string(tree.source(id));
    }
    Writer writer(*own);
    writer.write(tree, id);
    return std::move(writer).text();
}

} // namespace ravikit
