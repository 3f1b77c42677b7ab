#include "daemon/src/Callback/SubscriberList.h"

#include <new>

SubscriberList::SubscriberList() : m_current(new List) {}

SubscriberList::~SubscriberList() {
    delete m_current.load();
}

auto SubscriberList::prepare(ITaskInvoker* invoker, AnyFunction fn, void* userData) const
    -> std::unique_ptr<List> {
    auto list = std::make_unique<List>(subscriptions());
    list->entries.push_back({invoker, fn, userData});
    return list;
}

void SubscriberList::add(std::unique_ptr<List> list) noexcept {
    deliveryEpochs.retire(*m_current.exchange(list.release()));
}

std::size_t SubscriberList::removeAll(ITaskInvoker* invoker) {
    auto list = std::make_unique<List>(subscriptions());
    std::erase_if(list->entries,
                  [invoker](const CallbackEntry& entry) { return entry.invoker == invoker; });
    const std::size_t left = list->entries.size();
    add(std::move(list));
    return left;
}

void SubscriberList::retire() noexcept {
    deliveryEpochs.retire(m_source);
}

void SubscriberList::Source::reclaim() noexcept {
    void* const storage = dynamic_cast<void*>(&list);
    list.~SubscriberList();
    ::operator delete(storage);
}
