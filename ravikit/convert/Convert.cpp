#include "ravikit/convert/Convert.h"

#include "ravikit/convert/Merger.h"
#include "ravikit/convert/page/PageWriter.h"
#include "ravikit/html/PageTree.h"
#include "ravikit/text/Wording.h"
#include "ravikit/xml/Parser.h"

#include <algorithm>

namespace ravikit {

namespace {

const Problem* unreadableEncoding(const Problems& problems) {
    const auto found =
        std::find_if(problems.list().begin(), problems.list().end(), [](const Problem& problem) {
            return problem.kind == ProblemKind::UnreadableEncoding;
        });
    return found == problems.list().end() ? nullptr : &*found;
}

} // namespace

std::optional<std::u16string> markupToPlain(const std::u16string& text, bool strict,
                                            const Declarations* known, Problems& problems) {
    return markupToPlain(*parseInPlace(text, known), strict, problems);
}

std::optional<std::u16string> markupToPlain(const Tree& tree, bool strict, Problems& problems) {
    const Tree::Id root = tree.documentElement();
    const std::u16string_view name = root == Tree::none ? std::u16string_view() : tree.name(root);
    if (const Problem* const unreadable = unreadableEncoding(tree.problems())) {
        problems.add(unreadable->kind, unreadable->begin, unreadable->end, unreadable->reason);
        return std::nullopt; // a page of what are no characters would give other bytes back
    }
    if (strict) {
        const std::size_t before = problems.list().size();
        for (const Problem& problem : tree.problems().list()) {
            if (name != u"card" || problem.kind != ProblemKind::UnknownEntity) {
                problems.add(problem.kind, problem.begin, problem.end, problem.reason);
            }
        }
        if (problems.list().size() == before && name != u"wml" && name != u"card") {
            const Node& element = tree[root];
            problems.add(ProblemKind::NotConvertible, element.begin, element.end,
                         quoted(name) + u" is neither a deck, `wml`, nor a card, `card`");
        }
        if (problems.list().size() != before) {
            return std::nullopt;
        }
    }
    return writePage(tree);
}

std::optional<std::u16string> plainToMarkup(std::u16string_view page, bool strict,
                                            const Declarations* known, Problems& problems) {
    PageTree tree;
    if (!readLiterally(page, tree) && !readAsBrowser(page, tree, problems)) {
        return std::nullopt;
    }
    std::u16string markup;
    Problems refusals;
    if (!mergePage(tree, strict, known, markup, refusals)) {
        for (const Problem& refusal : refusals.list()) {
            const std::uint32_t at = tree.placeOf(refusal.begin, page);
            problems.add(refusal.kind, at, at + 1, refusal.reason);
        }
        return std::nullopt;
    }
    return markup;
}

} // namespace ravikit
