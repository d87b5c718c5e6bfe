#include "ravikit/component/DtdCache.h"
#include "ravikit/component/Kinds.h"
#include "ravikit/component/Objects.h"
#include "ravikit/component/ParseErrorObject.h"
#include "ravikit/component/RememberedTree.h"
#include "ravikit/convert/Convert.h"

#include <optional>
#include <utility>

namespace tessaly {

namespace {

using ravikit::Problems;

class TolmekObject : public Tolmek {
public:
    explicit TolmekObject(std::shared_ptr<FileSystemObject> files)
        : m_files(std::move(files)) {}

    bool convertText(std::int32_t fromKind, std::int32_t toKind, std::u16string& text,
                     bool strict) override {
        requireKind(fromKind);
        requireKind(toKind);
        if (fromKind == toKind) {
            return true;
        }
        return fromKind == kindMarkup ? toPlain(text, strict) : toMarkup(text, strict);
    }

    Value loadDtd(std::int32_t kind, const std::u16string& path) override {
        requireMarkup(kind);
        m_dtd = m_files ? dtdOfFile(*m_files, path) : nullptr;
        const bool loaded = m_dtd != nullptr;
        if (!loaded) {
            m_dtd = builtInDtd();
        }
        return loaded;
    }

    std::shared_ptr<ParseError> lastError() override { return m_lastError; }

    bool isValidText(const std::u16string& text) override {
        const auto tree = treeOf(text, m_dtd);
        Problems problems = tree->problems();
        m_dtd->judge(*tree, problems);
        return problems.empty() || refuse(text, std::move(problems));
    }

private:
    bool toPlain(std::u16string& text, bool strict) {
        Problems problems;
        auto page = ravikit::markupToPlain(*treeOf(text, m_dtd), strict, problems);
        return replace(text, std::move(page), std::move(problems));
    }

    bool toMarkup(std::u16string& page, bool strict) {
        Problems problems;
        auto markup = ravikit::plainToMarkup(page, strict, &m_dtd->declarations(), problems);
        return replace(page, std::move(markup), std::move(problems));
    }

    bool replace(std::u16string& text, std::optional<std::u16string> other, Problems problems) {
        if (!other) {
            return refuse(text, std::move(problems));
        }
        text = *std::move(other);
        return true;
    }

    bool refuse(const std::u16string& text, Problems problems) {
        problems.sort();
        m_lastError = makeParseError(text, std::move(problems));
        return false;
    }

    std::shared_ptr<FileSystemObject> m_files;
    std::shared_ptr<const ravikit::Dtd> m_dtd = builtInDtd();
    std::shared_ptr<ParseError> m_lastError;
};

} // namespace

std::shared_ptr<Tolmek> makeTolmek(std::shared_ptr<FileSystemObject> files) {
    return std::make_shared<TolmekObject>(std::move(files));
}

} // namespace tessaly
