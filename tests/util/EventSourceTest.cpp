#include "util/EventSource.h"
#include "support/Test.h"

using namespace tessaly;

namespace {

class Events {
public:
    virtual ~Events() = default;
    virtual void OnText(std::string& text) = 0;
};

class Listener : public Events {
public:
    explicit Listener(char name)
        : m_name(name) {}
    void OnText(std::string& text) override {
        text += m_name;
        if (const std::function<void()> run = then) { // it may replace itself
            run();
        }
    }
    std::function<void()> then;

private:
    char m_name;
};

std::string raised(EventSource<Events>& source) {
    std::string text;
    source.raise(&Events::OnText, text);
    return text;
}

} // namespace

TEST(EventSourceTest, ReachesSinksInOrderWhileTheyComeAndGo) {
    EventSource<Events> source;
    Listener a('a');
    Listener b('b');
    Listener c('c');
    Subscription ofA = source.advise(a);
    Subscription ofB = source.advise(b);
    Subscription ofC;
    a.then = [&] {
        ofA.end();
        source.unadvise(b);
        ofC = source.advise(c);
    };
    EXPECT_EQ(raised(source), "a");
    EXPECT_EQ(raised(source), "c");
    ofA = source.advise(b);
    ofC = std::move(ofA); // ends the bond to c
    EXPECT_EQ(raised(source), "b");
}

TEST(EventSourceTest, ANestedEventAndAnExceptionLeaveTheListInOrder) {
    EventSource<Events> source;
    Listener a('a');
    Listener b('b');
    Subscription ofA = source.advise(a);
    const Subscription ofB = source.advise(b);
    std::string nested;
    a.then = [&] {
        a.then = nullptr;
        ofA.end();
        nested = raised(source);
        throw std::logic_error("from a sink");
    };
    EXPECT_THROW(raised(source), std::logic_error);
    EXPECT_EQ(nested, "b");
    EXPECT_EQ(raised(source), "b");
}
