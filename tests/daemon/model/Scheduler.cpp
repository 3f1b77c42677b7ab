#include "tests/daemon/model/Scheduler.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <thread>
#include <utility>

namespace model {

namespace {

constexpr unsigned TIME_PASSES_ONE_IN = 24;

thread_local Scheduler* t_scheduler = nullptr;
thread_local int t_actor = -1;

}  // namespace

Scheduler::Scheduler(unsigned seed, std::function<void()> onStuck)
    : m_random(seed), m_changesOneIn(1 + seed % 4), m_onStuck(std::move(onStuck)) {}

Scheduler* Scheduler::current() {
    return t_scheduler;
}

int Scheduler::actor() {
    return t_actor;
}

void Scheduler::run(const std::vector<std::function<void()>>& bodies) {
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        m_actors.push_back(std::make_unique<Actor>());
    }
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        threads.emplace_back([this, i, &body = bodies[i]] {
            Actor& self = *m_actors[i];
            self.turn.acquire();
            t_scheduler = this;
            t_actor = static_cast<int>(i);
            body();
            t_scheduler = nullptr;
            self.ended = true;
            Actor* const next = choose(nullptr);
            (next == nullptr ? m_allEnded : next->turn).release();
        });
    }
    choose(nullptr)->turn.release();
    m_allEnded.acquire();
}

void Scheduler::yield() {
    waitUntil(nullptr);
}

void Scheduler::waitUntil(std::function<bool()> ready, std::optional<Time> deadline) {
    Actor& self = *m_actors[static_cast<std::size_t>(t_actor)];
    self.ready = std::move(ready);
    self.deadline = deadline;
    Actor* const next = choose(&self);
    if (next != &self) {
        next->turn.release();
        self.turn.acquire();
    }
}

void Scheduler::lock(Mutex& mutex) {
    waitUntil([&mutex] { return mutex.owner < 0; });
    mutex.owner = t_actor;
    ++m_actors[static_cast<std::size_t>(t_actor)]->mutexes;
}

void Scheduler::unlock(Mutex& mutex) {
    mutex.owner = -1;
    --m_actors[static_cast<std::size_t>(t_actor)]->mutexes;
    yield();
}

bool Scheduler::holdsMutex() const {
    return m_actors[static_cast<std::size_t>(t_actor)]->mutexes > 0;
}

void Scheduler::wait(Condition& condition, Mutex* mutex, Time deadline) {
    Waiter waiter;
    condition.push_back(&waiter);
    if (mutex == nullptr) {
        waitUntil([&] { return waiter.notified || m_now >= deadline; }, deadline);
    } else {
        mutex->owner = -1;
        waitUntil([&, mutex] { return mutex->owner < 0 && (waiter.notified || m_now >= deadline); },
                  deadline);
        mutex->owner = t_actor;
    }
    std::erase(condition, &waiter);
}

void Scheduler::notifyOne(Condition& condition) {
    Condition waiting;
    std::copy_if(condition.begin(), condition.end(), std::back_inserter(waiting),
                 [](const Waiter* waiter) { return !waiter->notified; });
    if (!waiting.empty()) {
        waiting[random(waiting.size())]->notified = true;
    }
}

bool Scheduler::canGoOn(const Actor& actor) const {
    return !actor.ended && (!actor.ready || actor.ready());
}

std::optional<Time> Scheduler::nextDeadline() const {
    std::optional<Time> next;
    for (const auto& actor : m_actors) {
        if (!actor->ended && actor->deadline > m_now && (!next || *actor->deadline < *next)) {
            next = actor->deadline;
        }
    }
    return next;
}

Scheduler::Actor* Scheduler::choose(const Actor* last) {
    ++m_steps;
    while (true) {
        std::vector<Actor*> able;
        for (const auto& actor : m_actors) {
            if (canGoOn(*actor)) {
                able.push_back(actor.get());
            }
        }
        const auto deadline = nextDeadline();
        if (deadline && (able.empty() || random(TIME_PASSES_ONE_IN) == 0)) {
            m_now = *deadline;
            continue;
        }
        if (able.empty()) {
            if (std::all_of(m_actors.begin(), m_actors.end(),
                            [](const auto& actor) { return actor->ended; })) {
                return nullptr;
            }
            m_onStuck();
            std::abort();
        }
        const auto same = std::find(able.begin(), able.end(), last);
        Actor* const chosen =
            same != able.end() && random(m_changesOneIn) != 0 ? *same : able[random(able.size())];
        chosen->ready = nullptr;
        chosen->deadline.reset();
        return chosen;
    }
}

unsigned Scheduler::random(std::size_t end) {
    return end < 2 ? 0 : static_cast<unsigned>(m_random() % end);
}

}  // namespace model
