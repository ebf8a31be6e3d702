// The bus: delivery order, vetoes, what a walk does when subscribers come and go during it, and
// failures of subscribers reaching the poster.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "client/ui/dialer/core/event_manager.h"
#include "platform/automation/failure.h"
#include "platform/automation/failure_number.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::dialer {
namespace {

using automation::Failure;
using automation::Variant;

// A subscriber that writes "<name>:<id>" to a shared journal and then runs its hook, if any.
class Recorder : public EventSubscriber {
  public:
    Recorder(std::string n, std::vector<std::string>& journal) : name(std::move(n)), log(journal) {}

    void KestrelwayEventSub(std::int32_t& eventId, Variant& data) override {
        log.push_back(name + ":" + std::to_string(eventId));
        lastData = data;
        if (onEvent) {
            onEvent();
        }
    }
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId, Variant&) override {
        log.push_back(name + "?" + std::to_string(eventId));
        if (onEvent) {
            onEvent();
        }
        return answer;
    }

    std::string name;
    std::vector<std::string>& log;
    std::function<void()> onEvent;
    std::int32_t answer = 0;
    Variant lastData;
};

class EventBusTest : public ::testing::Test {
  protected:
    std::vector<std::string> log;
    CEventManager bus;
    Recorder a{"a", log};
    Recorder b{"b", log};
    Recorder c{"c", log};
    Recorder d{"d", log};

    void RegisterAll(std::int32_t id, std::initializer_list<Recorder*> subscribers) {
        for (Recorder* s : subscribers) {
            ASSERT_TRUE(bus.registerForEvent(id, s));
        }
    }
    using Log = std::vector<std::string>;
};

// ---- registration and plain delivery ----

TEST_F(EventBusTest, DeliversInOrderOfRegistrationToThatIdOnly) {
    RegisterAll(1003, {&c, &a, &b});
    RegisterAll(1004, {&a});
    bus.postEvent(1003, Variant(automation::ObjectRef{}));
    EXPECT_EQ(log, (Log{"c:1003", "a:1003", "b:1003"}));
    EXPECT_TRUE(a.lastData.IsNothing());

    log.clear();
    bus.postEventVetoable(1003, Variant());
    EXPECT_EQ(log, (Log{"c?1003", "a?1003", "b?1003"}));
}

TEST_F(EventBusTest, ProgressTextReachesTheSubscriberAsData) {
    RegisterAll(32, {&a});
    bus.postEvent(32, Variant("Disconnected"));
    EXPECT_EQ(a.lastData.ToString(), "Disconnected");
}

TEST_F(EventBusTest, ListsAreKeyedByTheDecimalIdAndStayWhenEmptied) {
    RegisterAll(1005, {&a});
    RegisterAll(-7, {&b});
    ASSERT_EQ(bus.subjects().count("1005"), 1u);
    ASSERT_EQ(bus.subjects().count("-7"), 1u);

    EXPECT_TRUE(bus.deregisterForEvent(1005, &a));
    ASSERT_EQ(bus.subjects().count("1005"), 1u);
    const CSubjectList& list = *bus.subjects().at("1005");
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(list.head(), nullptr);
    EXPECT_EQ(list.tail(), nullptr);

    bus.postEvent(1005, Variant());
    EXPECT_EQ(bus.postEventVetoable(1005, Variant()), 0);
    EXPECT_TRUE(log.empty());
}

TEST_F(EventBusTest, SecondRegistrationIsRefusedAndDeliversOnce) {
    EXPECT_TRUE(bus.registerForEvent(1002, &a));
    EXPECT_FALSE(bus.registerForEvent(1002, &a));
    bus.postEvent(1002, Variant());
    EXPECT_EQ(log, (Log{"a:1002"}));
}

TEST_F(EventBusTest, NoSubscriberAndUnknownIdsChangeNothing) {
    EXPECT_FALSE(bus.registerForEvent(1002, nullptr));
    EXPECT_FALSE(bus.deregisterForEvent(1002, nullptr));
    EXPECT_FALSE(bus.deregisterForEvent(1001, &a));
    EXPECT_TRUE(bus.subjects().empty());

    bus.postEvent(1001, Variant());
    EXPECT_EQ(bus.postEventVetoable(1001, Variant()), 0);
    EXPECT_TRUE(bus.subjects().empty());

    RegisterAll(1003, {&a});
    EXPECT_FALSE(bus.deregisterForEvent(1003, &b));  // registered elsewhere, not here
    bus.postEvent(1003, Variant());
    EXPECT_EQ(log, (Log{"a:1003"}));
}

TEST_F(EventBusTest, SubscriberCanComeBackAfterDeregistering) {
    RegisterAll(1004, {&a, &b});
    EXPECT_TRUE(bus.deregisterForEvent(1004, &a));
    EXPECT_FALSE(bus.deregisterForEvent(1004, &a));
    EXPECT_TRUE(bus.registerForEvent(1004, &a));
    bus.postEvent(1004, Variant(std::int32_t{0}));
    EXPECT_EQ(log, (Log{"b:1004", "a:1004"}));
}

// ---- the list itself ----

TEST(SubjectListTest, LinksFollowAppendPrependAndRemove) {
    std::vector<std::string> log;
    Recorder a{"a", log}, b{"b", log}, c{"c", log};
    CSubjectList list;
    EXPECT_FALSE(list.append(nullptr));
    EXPECT_FALSE(list.remove(&a));  // empty list

    ASSERT_TRUE(list.append(&b));
    ASSERT_TRUE(list.append(&c));
    ASSERT_TRUE(list.prepend(&a));
    ASSERT_EQ(list.head()->subject(), &a);
    ASSERT_EQ(list.head()->NextSubject()->subject(), &b);
    ASSERT_EQ(list.tail()->subject(), &c);
    EXPECT_EQ(list.tail()->PrevSubject()->subject(), &b);
    EXPECT_EQ(list.head()->PrevSubject(), nullptr);

    // The middle node goes: its neighbours close ranks, its own links stay as they were.
    std::shared_ptr<CEventSubject> middle = list.head()->NextSubject();
    ASSERT_TRUE(list.remove(&b));
    EXPECT_FALSE(list.doesSubjectExistInList(&b));
    EXPECT_EQ(list.head()->NextSubject(), list.tail());
    EXPECT_EQ(list.tail()->PrevSubject(), list.head());
    EXPECT_EQ(middle->NextSubject(), list.tail());
    EXPECT_EQ(middle->PrevSubject(), list.head());

    ASSERT_TRUE(list.remove(&a));
    ASSERT_TRUE(list.remove(&c));
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(list.head(), nullptr);
    EXPECT_EQ(list.tail(), nullptr);
}

// ---- vetoes ----

TEST_F(EventBusTest, FirstVetoEndsTheWalk) {
    RegisterAll(1005, {&a, &b, &c});
    b.answer = kVeto;
    EXPECT_EQ(bus.postEventVetoable(1005, Variant()), 1);
    EXPECT_EQ(log, (Log{"a?1005", "b?1005"}));
}

TEST_F(EventBusTest, OnlyExactlyOneIsAVeto) {
    RegisterAll(1005, {&a, &b, &c});
    a.answer = 2;
    b.answer = -1;
    c.answer = 0;
    EXPECT_EQ(bus.postEventVetoable(1005, Variant()), 0);
    EXPECT_EQ(log, (Log{"a?1005", "b?1005", "c?1005"}));
}

TEST_F(EventBusTest, PlainPostIgnoresVetoAnswers) {
    RegisterAll(1005, {&a, &b});
    a.answer = kVeto;
    bus.postEvent(1005, Variant());
    EXPECT_EQ(log, (Log{"a:1005", "b:1005"}));
}

// ---- subscribers coming and going during a walk ----

TEST_F(EventBusTest, SubscriberRemovingItselfDoesNotStopTheWalk) {
    RegisterAll(32, {&a, &b, &c});
    b.onEvent = [&] { bus.deregisterForEvent(32, &b); };
    bus.postEvent(32, Variant("Disconnected"));
    EXPECT_EQ(log, (Log{"a:32", "b:32", "c:32"}));

    log.clear();
    bus.postEvent(32, Variant("Disconnected"));
    EXPECT_EQ(log, (Log{"a:32", "c:32"}));
}

TEST_F(EventBusTest, LastSubscriberRemovingItselfEndsTheWalkCleanly) {
    RegisterAll(32, {&a, &b});
    b.onEvent = [&] { bus.deregisterForEvent(32, &b); };
    a.onEvent = [&] { bus.deregisterForEvent(32, &a); };
    bus.postEvent(32, Variant());
    EXPECT_EQ(log, (Log{"a:32", "b:32"}));
    EXPECT_TRUE(bus.subjects().at("32")->isEmpty());
}

TEST_F(EventBusTest, SubscriberRemovedAheadOfTheWalkIsSkipped) {
    RegisterAll(1003, {&a, &b, &c});
    a.onEvent = [&] { bus.deregisterForEvent(1003, &b); };
    bus.postEvent(1003, Variant());
    EXPECT_EQ(log, (Log{"a:1003", "c:1003"}));

    // The same on the vetoable way, with the last one removed ahead.
    log.clear();
    a.onEvent = [&] { bus.deregisterForEvent(1003, &c); };
    EXPECT_EQ(bus.postEventVetoable(1003, Variant()), 0);
    EXPECT_EQ(log, (Log{"a?1003"}));
}

TEST_F(EventBusTest, SubscriberAppendedDuringTheWalkIsReachedByIt) {
    RegisterAll(1004, {&a, &b});
    a.onEvent = [&] { bus.registerForEvent(1004, &d); };
    bus.postEvent(1004, Variant());
    EXPECT_EQ(log, (Log{"a:1004", "b:1004", "d:1004"}));
}

TEST_F(EventBusTest, SubscriberAppendedByTheLastOneIsReached) {
    RegisterAll(1005, {&a});
    a.onEvent = [&] { bus.registerForEvent(1005, &b); };
    b.answer = kVeto;
    EXPECT_EQ(bus.postEventVetoable(1005, Variant()), 1);
    EXPECT_EQ(log, (Log{"a?1005", "b?1005"}));
}

TEST_F(EventBusTest, PostDuringDeliveryMakesItsOwnWalk) {
    RegisterAll(1002, {&a, &b});
    RegisterAll(1004, {&b, &c});
    bool posted = false;
    a.onEvent = [&] {
        if (!posted) {
            posted = true;
            bus.postEvent(1004, Variant());
        }
    };
    bus.postEvent(1002, Variant());
    EXPECT_EQ(log, (Log{"a:1002", "b:1004", "c:1004", "b:1002"}));
}

// ---- failures ----

TEST_F(EventBusTest, FailureInASubscriberReachesThePosterAndStopsTheWalk) {
    RegisterAll(1003, {&a, &b, &c});
    b.onEvent = [] { throw Failure(automation::err::kTypeMismatch); };
    EXPECT_EQ(FailureNumber([&] { bus.postEvent(1003, Variant()); }), 13);
    EXPECT_EQ(log, (Log{"a:1003", "b:1003"}));

    log.clear();
    EXPECT_EQ(FailureNumber([&] { bus.postEventVetoable(1003, Variant()); }), 13);
    EXPECT_EQ(log, (Log{"a?1003", "b?1003"}));

    // The bus is intact afterwards.
    log.clear();
    b.onEvent = nullptr;
    bus.postEvent(1003, Variant());
    EXPECT_EQ(log, (Log{"a:1003", "b:1003", "c:1003"}));
}

// ---- a form as subscriber ----

// A pullout as the program builds them: registers at load, follows the connection events with its
// Enabled property, deregisters when it unloads.
class PulloutLike : public forms::Form, public EventSubscriber {
  public:
    PulloutLike(forms::Platform& p, CEventManager& events) : Form(p, "PulloutLike"), bus(events) {}

    void KestrelwayEventSub(std::int32_t& eventId, Variant&) override {
        ++calls;
        if (eventId == event::kGettingDialList || eventId == event::kConnectStarted) {
            SetEnabled(false);
        } else if (eventId == event::kDialListDone || eventId == 32) {
            SetEnabled(true);
        }
    }
    std::int32_t KestrelwayVetoableEventFunction(std::int32_t&, Variant&) override {
        return unsaved ? kVeto : 0;
    }

    CEventManager& bus;
    bool unsaved = false;
    int calls = 0;

  protected:
    void Form_Load() override {
        for (std::int32_t id : kIds) {
            bus.registerForEvent(id, this);
        }
    }
    void Form_Unload(int&) override {
        for (std::int32_t id : kIds) {
            bus.deregisterForEvent(id, this);
        }
    }

  private:
    static constexpr std::int32_t kIds[] = {event::kConnectRequested, event::kConnectStarted, 32,
                                            event::kGettingDialList, event::kDialListDone};
};

TEST(EventBusFormTest, PulloutFollowsTheBusWhileLoadedOnly) {
    headless::HeadlessPlatform platform;
    CEventManager bus;
    PulloutLike pullout(platform, bus);
    pullout.Show();

    bus.postEvent(event::kGettingDialList, Variant());
    EXPECT_FALSE(pullout.Enabled());
    bus.postEvent(event::kDialListDone, Variant(std::int32_t{0}));
    EXPECT_TRUE(pullout.Enabled());
    bus.postEvent(event::kConnectStarted, Variant());
    EXPECT_FALSE(pullout.Enabled());
    bus.postEvent(32, Variant("Disconnected"));
    EXPECT_TRUE(pullout.Enabled());

    pullout.unsaved = true;
    EXPECT_EQ(bus.postEventVetoable(event::kConnectRequested, Variant()), 1);

    ASSERT_TRUE(pullout.Unload());
    const int callsBefore = pullout.calls;
    bus.postEvent(event::kGettingDialList, Variant());
    EXPECT_EQ(pullout.calls, callsBefore);
    EXPECT_EQ(bus.postEventVetoable(event::kConnectRequested, Variant()), 0);
    for (const auto& [id, list] : bus.subjects()) {
        EXPECT_TRUE(list->isEmpty()) << id;
    }
}

}  // namespace
}  // namespace kw::dialer
