#pragma once

// The bus that keeps the forms in step: subscribers per numbered event, called in the order they
// registered, with a second way of posting in which any subscriber may veto what is about to
// happen. The engine's progress codes share the number space with the program's own events.

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/automation/variant.h"

namespace kw::dialer {

// The program's own events. Progress codes of the engine (1, 32, 101, ...) are posted as they are.
namespace event {
inline constexpr std::int32_t kDisconnectRequested = 1001;  // before Disconnect is called
inline constexpr std::int32_t kConnectStarted = 1002;       // Connect has returned
inline constexpr std::int32_t kGettingDialList = 1003;      // a dial list was asked for
inline constexpr std::int32_t kDialListDone = 1004;         // it arrived, or will not arrive
inline constexpr std::int32_t kConnectRequested = 1005;     // vetoable: a connect is about to start
}  // namespace event

// A veto from KestrelwayVetoableEventFunction; any other result consents.
inline constexpr std::int32_t kVeto = 1;

// What a form offers to be called by the bus. Both routines may fail: the failure rises out of the
// post to the poster. The id and the data are those of the walk, by reference, as every subscriber
// of one post shares them.
class EventSubscriber {
  public:
    virtual ~EventSubscriber() = default;
    virtual void KestrelwayEventSub(std::int32_t& eventId, automation::Variant& data) = 0;
    virtual std::int32_t KestrelwayVetoableEventFunction(std::int32_t& eventId,
                                                         automation::Variant& data) = 0;
};

// One node of a subscriber list. The bus does not own the subscriber: forms live as long as the
// program and deregister in their unload step. Next links own, previous links only observe, so
// that a list never keeps itself alive.
class CEventSubject {
  public:
    CEventSubject() = default;
    CEventSubject(const CEventSubject&) = delete;
    CEventSubject& operator=(const CEventSubject&) = delete;

    const std::shared_ptr<CEventSubject>& NextSubject() const { return next_; }
    void SetNextSubject(std::shared_ptr<CEventSubject> next) { next_ = std::move(next); }
    std::shared_ptr<CEventSubject> PrevSubject() const { return prev_.lock(); }
    void SetPrevSubject(const std::shared_ptr<CEventSubject>& prev) { prev_ = prev; }
    EventSubscriber* subject() const { return subject_; }
    void SetSubject(EventSubscriber* subject) { subject_ = subject; }

  private:
    std::shared_ptr<CEventSubject> next_;
    std::weak_ptr<CEventSubject> prev_;
    EventSubscriber* subject_ = nullptr;
};

// The subscribers of one event id, in the order they came.
class CSubjectList {
  public:
    CSubjectList() = default;
    ~CSubjectList();
    CSubjectList(const CSubjectList&) = delete;
    CSubjectList& operator=(const CSubjectList&) = delete;

    const std::shared_ptr<CEventSubject>& head() const { return head_; }
    void SetHead(std::shared_ptr<CEventSubject> node) { head_ = std::move(node); }
    const std::shared_ptr<CEventSubject>& tail() const { return tail_; }
    void SetTail(std::shared_ptr<CEventSubject> node) { tail_ = std::move(node); }

    bool isEmpty() const { return !head_ && !tail_; }
    // True when a node holds this very object.
    bool doesSubjectExistInList(const EventSubscriber* subject) const;
    // Unlinks the subject's node but leaves the node's own links as they were: a walk standing on
    // it goes on to what followed it.
    bool remove(const EventSubscriber* subject);
    bool append(EventSubscriber* subject);
    bool prepend(EventSubscriber* subject);

  private:
    std::shared_ptr<CEventSubject> FindSubject(const EventSubscriber* subject) const;

    std::shared_ptr<CEventSubject> head_;
    std::shared_ptr<CEventSubject> tail_;
};

class CEventManager {
  public:
    CEventManager() = default;
    CEventManager(const CEventManager&) = delete;
    CEventManager& operator=(const CEventManager&) = delete;

    // False for no subscriber or one already registered for this id.
    bool registerForEvent(std::int32_t eventId, EventSubscriber* subscriber);
    // False for no subscriber, an id nobody registered, or a subscriber not in its list.
    bool deregisterForEvent(std::int32_t eventId, EventSubscriber* subscriber);

    // Calls every subscriber of the id, earliest first; an id nobody registered is dropped.
    void postEvent(std::int32_t eventId, automation::Variant data);
    // Asks the subscribers in the same order until one vetoes: 1 when one did, else 0.
    std::int32_t postEventVetoable(std::int32_t eventId, automation::Variant data);

    // The lists by the decimal string of their id. A list that lost its last member stays.
    const std::map<std::string, std::shared_ptr<CSubjectList>>& subjects() const {
        return subjects_;
    }

  private:
    std::shared_ptr<CSubjectList> Lookup(std::int32_t eventId) const;

    std::map<std::string, std::shared_ptr<CSubjectList>> subjects_;
};

}  // namespace kw::dialer
