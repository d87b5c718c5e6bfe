#include "external/Platform.h"
#include "util/Object.h"

#include <gtest/gtest.h>

namespace {

/// Fails a test that leaves an object alive: a reference cycle, or a reference kept too long.
class LiveObjectCheck : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        tessaly::Platform::install(nullptr);
        m_before = tessaly::Object::liveCount();
    }
    void OnTestEnd(const testing::TestInfo&) override {
        tessaly::Platform::install(nullptr);
        EXPECT_EQ(tessaly::Object::liveCount(), m_before) << "objects left alive";
    }

    std::size_t m_before = 0;
};

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new LiveObjectCheck);
    return RUN_ALL_TESTS();
}
