// The bus: delivery order, vetoes, what a walk does when subscribers come and go during it, and
// failures of subscribers reaching the poster.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "client/ui/dialer/core/event_manager.h"
#include "platform/automation/failure.h"
#include "platform/automation/failure_number.h"

namespace kw::dialer {
namespace {

using automation::Variant;
using Log = std::vector<std::string>;

// Writes "<name>:<id>" (plain) or "<name>?<id>" (vetoable) to a shared journal, then runs its hook.
class Recorder : public EventSubscriber {
  public:
    Recorder(std::string n, Log& journal) : name(std::move(n)), log(journal) {}
    void KestrelwayEventSub(std::int32_t& id, Variant& data) override {
        log.push_back(name + ":" + std::to_string(id));
        lastData = data;
        if (onEvent)
            onEvent();
    }
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& id, Variant&) override {
        log.push_back(name + "?" + std::to_string(id));
        if (onEvent)
            onEvent();
        return answer;
    }
    std::string name;
    Log& log;
    std::function<void()> onEvent;
    std::int32_t answer = 0;
    Variant lastData;
};

class EventBusTest : public ::testing::Test {
  protected:
    Log log;
    CEventManager bus;
    Recorder a{"a", log}, b{"b", log}, c{"c", log}, d{"d", log};

    void RegisterAll(std::int32_t id, std::initializer_list<Recorder*> subscribers) {
        for (Recorder* s : subscribers) ASSERT_TRUE(bus.registerForEvent(id, s));
    }
    Log Post(std::int32_t id, Variant data = Variant()) {
        log.clear();
        bus.postEvent(id, data);
        return log;
    }
    Log PostVetoable(std::int32_t id, std::int32_t expected) {
        log.clear();
        EXPECT_EQ(bus.postEventVetoable(id, Variant()), expected);
        return log;
    }
};

TEST_F(EventBusTest, RegistrationOrderDecidesDeliveryToThatIdOnly) {
    RegisterAll(1003, {&c, &a, &b});
    RegisterAll(1004, {&a});
    EXPECT_EQ(Post(1003, Variant(automation::ObjectRef{})), (Log{"c:1003", "a:1003", "b:1003"}));
    EXPECT_TRUE(a.lastData.IsNothing());
    EXPECT_EQ(PostVetoable(1003, 0), (Log{"c?1003", "a?1003", "b?1003"}));
    EXPECT_EQ(Post(1004, Variant("Disconnected")), (Log{"a:1004"}));
    EXPECT_EQ(a.lastData.ToString(), "Disconnected");
    EXPECT_TRUE(Post(1001).empty());
}

TEST_F(EventBusTest, ASubscriberIsOnAListOnceAndBackInItComesLast) {
    RegisterAll(1003, {&c, &a});
    EXPECT_FALSE(bus.registerForEvent(1003, &a)) << "a second registration is refused";
    EXPECT_FALSE(bus.deregisterForEvent(1003, &d)) << "registered nowhere";
    EXPECT_TRUE(bus.deregisterForEvent(1003, &c));
    EXPECT_FALSE(bus.deregisterForEvent(1003, &c));
    EXPECT_TRUE(bus.registerForEvent(1003, &c));
    EXPECT_EQ(Post(1003), (Log{"a:1003", "c:1003"}));
}

TEST_F(EventBusTest, OnlyAnAnswerOfExactlyOneVetoesAndItEndsTheWalk) {
    RegisterAll(1005, {&a, &b, &c});
    a.answer = 2;
    b.answer = -1;
    EXPECT_EQ(PostVetoable(1005, 0), (Log{"a?1005", "b?1005", "c?1005"}));
    b.answer = kVeto;
    EXPECT_EQ(PostVetoable(1005, 1), (Log{"a?1005", "b?1005"}));
    EXPECT_EQ(Post(1005), (Log{"a:1005", "b:1005", "c:1005"})) << "a plain post ignores answers";
}

TEST_F(EventBusTest, ASubscriberRemovingItselfIsReachedAndTheNextPostSkipsIt) {
    RegisterAll(32, {&a, &b, &c});
    b.onEvent = [&] { bus.deregisterForEvent(32, &b); };
    EXPECT_EQ(Post(32), (Log{"a:32", "b:32", "c:32"}));
    EXPECT_EQ(Post(32), (Log{"a:32", "c:32"}));
    a.onEvent = [&] { bus.deregisterForEvent(32, &a); };
    c.onEvent = [&] { bus.deregisterForEvent(32, &c); };
    EXPECT_EQ(Post(32), (Log{"a:32", "c:32"})) << "the last ones leaving end the walk cleanly";
    EXPECT_TRUE(Post(32).empty());
}

TEST_F(EventBusTest, OneRemovedAheadOfTheWalkIsSkipped) {
    RegisterAll(1003, {&a, &b, &c});
    a.onEvent = [&] { bus.deregisterForEvent(1003, &b); };
    EXPECT_EQ(Post(1003), (Log{"a:1003", "c:1003"}));
    a.onEvent = [&] { bus.deregisterForEvent(1003, &c); };
    EXPECT_EQ(PostVetoable(1003, 0), (Log{"a?1003"}));
}

TEST_F(EventBusTest, OneAppendedDuringTheWalkIsReachedByItEvenAfterTheLast) {
    RegisterAll(1004, {&a, &b});
    a.onEvent = [&] { bus.registerForEvent(1004, &d); };
    EXPECT_EQ(Post(1004), (Log{"a:1004", "b:1004", "d:1004"}));
    RegisterAll(1005, {&c});
    c.onEvent = [&] { bus.registerForEvent(1005, &d); };
    d.answer = kVeto;
    EXPECT_EQ(PostVetoable(1005, 1), (Log{"c?1005", "d?1005"}));
}

TEST_F(EventBusTest, APostDuringDeliveryMakesItsOwnWalk) {
    RegisterAll(1002, {&a, &b});
    RegisterAll(1006, {&b, &c});
    a.onEvent = [&] { bus.postEvent(1006, Variant()); };
    EXPECT_EQ(Post(1002), (Log{"a:1002", "b:1006", "c:1006", "b:1002"}));
}

TEST_F(EventBusTest, FailureInASubscriberReachesThePosterAndStopsTheWalk) {
    RegisterAll(1003, {&a, &b, &c});
    b.onEvent = [] { throw automation::Failure(automation::err::kTypeMismatch); };
    EXPECT_EQ(FailureNumber([&] { Post(1003); }), 13);
    EXPECT_EQ(log, (Log{"a:1003", "b:1003"}));
    EXPECT_EQ(FailureNumber([&] { PostVetoable(1003, 0); }), 13);
    EXPECT_EQ(log, (Log{"a?1003", "b?1003"}));
    b.onEvent = nullptr;
    EXPECT_EQ(Post(1003), (Log{"a:1003", "b:1003", "c:1003"})) << "the bus is intact afterwards";
}

}  // namespace
}  // namespace kw::dialer
