#include "external/Platform.h"

#include <utility>

namespace tessaly {

namespace {

std::shared_ptr<Platform>& installed() {
    static std::shared_ptr<Platform> platform;
    return platform;
}

} // namespace

std::shared_ptr<Platform> Platform::current() {
    if (!installed()) {
        installed() = makeDefaultPlatform();
    }
    return installed();
}

void Platform::install(std::shared_ptr<Platform> platform) {
    installed() = std::move(platform);
}

} // namespace tessaly
