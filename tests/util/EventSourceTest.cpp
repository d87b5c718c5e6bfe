#include "component/Fakes.h"

using namespace fakes;

namespace {

/// A document with sinks that say who hears an event.
class EventSources : public Component {
protected:
    EventSources() {
        b.hooks["OnDocDirty"] = [&] { heard += 'b'; };
        c.hooks["OnDocDirty"] = [&] { heard += 'c'; };
    }
    std::string raised() {
        heard.clear();
        doc->isDirty(true);
        return heard;
    }
    std::string heard;
    support::EventLog a{world.log};
    support::EventLog b{world.log};
    support::EventLog c{world.log};
    std::shared_ptr<WirelessDocument> doc = std::make_shared<WirelessDocument>();
    Subscription ofA = doc->events().advise(a);
    Subscription ofB = doc->events().advise(b);
};

} // namespace

TEST_F(EventSources, ReachSinksInOrderWhileTheyComeAndGo) {
    Subscription ofC;
    a.hooks["OnDocDirty"] = [&] {
        heard += 'a';
        ofA.end();
        doc->events().unadvise(b);
        ofC = doc->events().advise(c);
    };
    EXPECT_EQ(raised(), "a");
    EXPECT_EQ(raised(), "c");
    ofA = doc->events().advise(b);
    ofC = std::move(ofA); // ends the bond to c
    EXPECT_EQ(raised(), "b");
}

TEST_F(EventSources, StayInOrderAfterANestedEventAndAnException) {
    a.hooks["OnDocDirty"] = [&] {
        ofA.end();
        EXPECT_EQ(raised(), "b");
        throw std::logic_error("from a sink");
    };
    EXPECT_THROW(raised(), std::logic_error);
    EXPECT_EQ(raised(), "b");
}
