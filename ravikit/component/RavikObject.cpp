#include "ravikit/component/DomObjects.h"
#include "ravikit/component/DtdCache.h"
#include "ravikit/component/Kinds.h"
#include "ravikit/component/Objects.h"
#include "ravikit/component/RememberedTree.h"
#include "ravikit/deck/DeckText.h"

#include <utility>

namespace tessaly {

namespace {

class RavikObject : public Ravik {
public:
    explicit RavikObject(std::shared_ptr<FileSystemObject> files)
        : m_files(std::move(files)) {}

    std::shared_ptr<IXMLDOMDocument2> parseMarkup(const std::u16string& text, bool /*validate*/,
                                                  bool /*flagB*/) override {
        auto tree = treeOf(text, dtd());
        return tree->wellFormed() ? makeDOMDocument(std::move(tree)) : makeEmptyDOMDocument();
    }

    void setDtdPath(std::int32_t kind, const std::u16string& path) override {
        requireMarkup(kind);
        m_dtdPath = path;
        m_dtd.reset();
    }

    /// Texts are judged by the DTD, which says what the schema says. The schema is not read.
    void setSchemaPath(std::int32_t kind, const std::u16string& /*path*/) override {
        requireMarkup(kind);
    }

    std::u16string importDoctypedText(const std::u16string& text) override {
        return ravikit::importDeck(text);
    }

    std::u16string exportText(const std::u16string& text) override {
        return ravikit::exportDeck(text);
    }

    std::u16string importBareText(const std::u16string& text) override {
        return ravikit::importDeck(text);
    }

private:
    /// The DTD in force, looked up when it is needed for the first time.
    const std::shared_ptr<const ravikit::Dtd>& dtd() {
        if (!m_dtd && !m_dtdPath.empty() && m_files) {
            m_dtd = dtdOfFile(*m_files, m_dtdPath);
        }
        if (!m_dtd) {
            m_dtd = builtInDtd();
        }
        return m_dtd;
    }

    std::shared_ptr<FileSystemObject> m_files;
    std::u16string m_dtdPath;
    std::shared_ptr<const ravikit::Dtd> m_dtd;
};

} // namespace

std::shared_ptr<Ravik> makeRavik(std::shared_ptr<FileSystemObject> files) {
    return std::make_shared<RavikObject>(std::move(files));
}

} // namespace tessaly
