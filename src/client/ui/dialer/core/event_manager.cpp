#include "client/ui/dialer/core/event_manager.h"

#include <utility>

namespace kw::dialer {

CSubjectList::~CSubjectList() {
    // Let go of the chain node by node rather than by nested destructors; a node that a walk
    // still stands on keeps the rest of the chain for that walk.
    std::shared_ptr<CEventSubject> node = std::move(head_);
    tail_.reset();
    while (node && node.use_count() == 1) {
        std::shared_ptr<CEventSubject> next = node->NextSubject();
        node->SetNextSubject(nullptr);
        node = std::move(next);
    }
}

std::shared_ptr<CEventSubject> CSubjectList::FindSubject(const EventSubscriber* subject) const {
    for (std::shared_ptr<CEventSubject> node = head_; node; node = node->NextSubject()) {
        if (node->subject() == subject) {
            return node;
        }
    }
    return nullptr;
}

bool CSubjectList::doesSubjectExistInList(const EventSubscriber* subject) const {
    return FindSubject(subject) != nullptr;
}

bool CSubjectList::remove(const EventSubscriber* subject) {
    if (subject == nullptr) {
        return false;
    }
    std::shared_ptr<CEventSubject> node = FindSubject(subject);
    if (!node) {
        return false;
    }
    const std::shared_ptr<CEventSubject> prev = node->PrevSubject();
    const std::shared_ptr<CEventSubject> next = node->NextSubject();
    if (node == head_) {
        head_ = next;
    }
    if (node == tail_) {
        tail_ = prev;
    }
    if (prev) {
        prev->SetNextSubject(next);
    }
    if (next) {
        next->SetPrevSubject(prev);
    }
    return true;
}

bool CSubjectList::append(EventSubscriber* subject) {
    if (subject == nullptr) {
        return false;
    }
    auto node = std::make_shared<CEventSubject>();
    node->SetSubject(subject);
    if (!tail_) {
        head_ = node;
        tail_ = node;
    } else {
        node->SetPrevSubject(tail_);
        tail_->SetNextSubject(node);
        tail_ = node;
    }
    return true;
}

bool CSubjectList::prepend(EventSubscriber* subject) {
    if (subject == nullptr) {
        return false;
    }
    auto node = std::make_shared<CEventSubject>();
    node->SetSubject(subject);
    if (!head_) {
        head_ = node;
        tail_ = node;
    } else {
        node->SetNextSubject(head_);
        head_->SetPrevSubject(node);
        head_ = node;
    }
    return true;
}

std::shared_ptr<CSubjectList> CEventManager::Lookup(std::int32_t eventId) const {
    auto it = subjects_.find(std::to_string(eventId));
    return it == subjects_.end() ? nullptr : it->second;
}

bool CEventManager::registerForEvent(std::int32_t eventId, EventSubscriber* subscriber) {
    if (subscriber == nullptr) {
        return false;
    }
    std::shared_ptr<CSubjectList> list = Lookup(eventId);
    if (!list) {
        list = std::make_shared<CSubjectList>();
        subjects_.emplace(std::to_string(eventId), list);
    }
    if (list->doesSubjectExistInList(subscriber)) {
        return false;
    }
    return list->append(subscriber);
}

bool CEventManager::deregisterForEvent(std::int32_t eventId, EventSubscriber* subscriber) {
    if (subscriber == nullptr) {
        return false;
    }
    std::shared_ptr<CSubjectList> list = Lookup(eventId);
    if (!list) {
        return false;
    }
    return list->remove(subscriber);
}

// No copy of the list and no lock: the next link is read only after the subscriber returned, so
// a subscriber may deregister itself or others, register new ones, or post again meanwhile.
void CEventManager::postEvent(std::int32_t eventId, automation::Variant data) {
    std::shared_ptr<CSubjectList> list = Lookup(eventId);
    if (!list) {
        return;
    }
    for (std::shared_ptr<CEventSubject> node = list->head(); node; node = node->NextSubject()) {
        node->subject()->KestrelwayEventSub(eventId, data);
    }
}

std::int32_t CEventManager::postEventVetoable(std::int32_t eventId, automation::Variant data) {
    std::shared_ptr<CSubjectList> list = Lookup(eventId);
    if (!list) {
        return 0;
    }
    for (std::shared_ptr<CEventSubject> node = list->head(); node; node = node->NextSubject()) {
        if (node->subject()->KestrelwayVetoableEventFunction(eventId, data) == kVeto) {
            return kVeto;
        }
    }
    return 0;
}

}  // namespace kw::dialer
