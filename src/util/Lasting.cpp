#include "util/Lasting.h"

#include <atomic>

namespace tessaly {

namespace {

struct Kept {
    void* object;
    void (*release)(void*);
    Kept* previous;
};

constinit std::atomic<Kept*> last = nullptr;

/// Destructors of modules run after everything that was left to std::atexit, which is where the
/// static objects of C++ end.
[[gnu::destructor]] void releaseAll() {
    while (const Kept* const kept = last.load()) {
        last.store(kept->previous);
        kept->release(kept->object);
        delete kept;
    }
}

} // namespace

void releaseAtEnd(void* object, void (*release)(void*)) {
    auto* const kept = new Kept{object, release, last.load()};
    while (!last.compare_exchange_weak(kept->previous, kept)) {
    }
}

} // namespace tessaly
