#include "ravikit/component/RememberedTree.h"

#include "ravikit/xml/Parser.h"
#include "util/Lasting.h"

#include <cstring>
#include <mutex>
#include <string_view>
#include <utility>

namespace tessaly {

namespace {

struct Remembered {
    std::mutex mutex;
    std::shared_ptr<const ravikit::Dtd> dtd;
    std::weak_ptr<const ravikit::Tree> tree;
    std::shared_ptr<const ravikit::Tree> kept; ///< the same, if it is not too large
};

Remembered& remembered() {
    static auto& last = lasting<Remembered>();
    return last;
}

/// In one call; the library compares wide characters one by one.
bool isSame(std::u16string_view a, std::u16string_view b) {
    return a.size() == b.size() &&
           std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0;
}

} // namespace

std::shared_ptr<const ravikit::Tree> treeOf(const std::u16string& text,
                                            const std::shared_ptr<const ravikit::Dtd>& dtd) {
    Remembered& last = remembered();
    {
        const std::lock_guard lock(last.mutex);
        if (auto tree = last.tree.lock(); tree && last.dtd == dtd && isSame(tree->text(), text)) {
            return tree;
        }
    }
    auto tree = ravikit::parse(text, &dtd->declarations());
    rememberTree(tree, dtd);
    return tree;
}

void rememberTree(std::shared_ptr<const ravikit::Tree> tree,
                  const std::shared_ptr<const ravikit::Dtd>& dtd) {
    constexpr std::size_t mostKept = std::size_t{1} << 22U; // units
    Remembered& last = remembered();
    std::shared_ptr<const ravikit::Tree> previous; // ends outside of the lock
    const std::lock_guard lock(last.mutex);
    last.dtd = dtd;
    last.tree = tree;
    const bool isKept = tree->text().size() <= mostKept;
    previous = std::exchange(last.kept, isKept ? std::move(tree) : nullptr);
}

} // namespace tessaly
