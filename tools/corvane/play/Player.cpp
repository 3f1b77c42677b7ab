// Plays the steps of a scenario.
#include "tools/corvane/play/Player.h"

#include <iostream>
#include <utility>

namespace corvane::tool {

using std::chrono::steady_clock;

Player::Player(const std::string& path, std::string name)
    : m_name(std::move(name)), m_daemon(path) {
    for (const auto& event : m_daemon.watch()) {
        m_isSet.insert(event);
    }
}

void Player::play(const std::vector<Step>& steps) {
    for (const auto& step : steps) {
        std::visit([&](const auto& action) { play(action, step.line); }, step.action);
    }
}

void Player::play(const EmitStep& step, int line) {
    const unsigned called = m_daemon.emit(*step.event, step.values);
    noteUntil(steady_clock::now());  // empties the queue of notices
    std::cout << m_name << ':' << line << ": " << step.event->name << ": " << deliveredText(called)
              << std::endl;
}

void Player::play(const WaitStep& step, int) {
    noteUntil(steady_clock::now() + step.time);
}

void Player::play(const RepeatStep& step, int) {
    for (int i = 0; i < step.times; ++i) {
        play(step.steps);
    }
}

void Player::play(const ExpectStep& step, int line) {
    const auto limit = steady_clock::now() + step.within.value_or(std::chrono::milliseconds(0));
    // Notices that are queued already arrived before the limit.
    noteUntil(steady_clock::now());
    while (step.within && !isDecided(step)) {
        const auto notice = m_daemon.nextNotice(limit);
        if (!notice) {
            break;
        }
        note(*notice);
    }
    ++m_expected;
    if (!holds(step)) {
        ++m_failed;
        std::cerr << m_name << ':' << line << ": " << step.event->name << ": " << found(step)
                  << std::endl;
    }
    if (step.state == ExpectStep::State::Delivered) {
        m_called.erase(step.event->name);
    }
}

void Player::note(const Notice& notice) {
    switch (notice.change) {
        case Notice::Change::Set:
            m_isSet.insert(notice.event);
            break;
        case Notice::Change::Unset:
            m_isSet.erase(notice.event);
            break;
        case Notice::Change::Delivered:
            m_called[notice.event] += notice.called;
            break;
    }
}

void Player::noteUntil(InjectClient::Limit limit) {
    while (const auto notice = m_daemon.nextNotice(limit)) {
        note(*notice);
    }
}

bool Player::holds(const ExpectStep& step) {
    if (step.state == ExpectStep::State::Delivered) {
        return m_called[step.event->name] == step.count;
    }
    return m_isSet.contains(step.event->name) == (step.state == ExpectStep::State::Set);
}

// True if waiting longer can't change the result. "delivered 0" is only decided by a delivery or
// at the limit.
bool Player::isDecided(const ExpectStep& step) {
    if (step.state != ExpectStep::State::Delivered) {
        return holds(step);
    }
    const unsigned called = m_called[step.event->name];
    return step.count == 0 ? called > 0 : called >= step.count;
}

std::string Player::found(const ExpectStep& step) {
    if (step.state == ExpectStep::State::Delivered) {
        return "expected to be delivered " + std::to_string(step.count) + " times, but it was " +
               std::to_string(m_called[step.event->name]) + " times";
    }
    return step.state == ExpectStep::State::Set ? "expected to be set, but it is not"
                                                : "expected not to be set, but it is";
}

}  // namespace corvane::tool
