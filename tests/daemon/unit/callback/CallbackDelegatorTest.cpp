// The registry of event sources: when it sets and unsets a platform callback.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "daemon/src/Callback/BluetoothCallback.h"
#include "daemon/src/Callback/CallbackDelegator.h"
#include "daemon/src/Callback/SoundManagerCallback.h"
#include "taskExecutor/TaskInvokerImpl.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Invokers.h"
#include "tests/support/SizeType.h"

using testing::ElementsAre;

namespace {

const std::string SET = "bt_adapter_set_state_changed_cb";
const std::string UNSET = "bt_adapter_unset_state_changed_cb";

void ignore(int, bt_adapter_state_e, void*) {}
void ignoreRoute(sound_tv_output_route_e, void*) {}
void callFunction(int, bt_adapter_state_e, void* userData) {
    (*static_cast<std::function<void()>*>(userData))();
}

class CallbackDelegatorTest : public testing::Test {
protected:
    ~CallbackDelegatorTest() override {
        m_delegator.reset();
        fake_platform::reset();
    }

    int subscribe(ITaskInvoker& invoker) {
        return m_delegator->registerCallback<BtAdapterStateChangedCb>(BT_ADAPTER_STATE_CHANGED,
                                                                      &invoker, ignore, nullptr);
    }
    int subscribe(ITaskInvoker& invoker, std::function<void()>& function) {
        return m_delegator->registerCallback<BtAdapterStateChangedCb>(
            BT_ADAPTER_STATE_CHANGED, &invoker, callFunction, &function);
    }
    int unsubscribe(ITaskInvoker& invoker) {
        return m_delegator->unregisterCallback<BtAdapterStateChangedCb>(BT_ADAPTER_STATE_CHANGED,
                                                                        &invoker);
    }
    std::size_t sources() {
        const MutexLock lock(m_delegator->mutex());
        return m_delegator->getCallbackList(BT_ADAPTER_STATE_CHANGED).size();
    }

    std::unique_ptr<CallbackDelegator> m_delegator = std::make_unique<CallbackDelegator>();
    DirectTaskInvoker m_a;
    DirectTaskInvoker m_b;
};

std::string in(const std::string& signature) {
    return "D QVX log.h: ApiTracker(#) > IN >> [" + signature + "(#)]";
}
std::string out(const std::string& signature) {
    return "D QVX log.h: ~ApiTracker(#) > OUT << [" + signature + "(#)]";
}

const std::string GET_LIST =
    "std::map<CallbackType, std::unique_ptr<ICallback> >& "
    "CallbackDelegator::getCallbackList(CallbackType)";
const std::string UNREGISTER =
    "int CallbackDelegator::unregisterCallback(CallbackType, ITaskInvoker*) [with CallbackClass = "
    "BtAdapterStateChangedCb]";
const std::string REMOVE =
    std::string(
        "size_t CallbackImpl<CallbackFunction, Types>::remove(ITaskInvoker*) [with "
        "CallbackFunction = void (*)(int, bt_adapter_state_e, void*); Types = {int, "
        "bt_adapter_state_e}; size_t = ") +
    SIZE_TYPE + "]";

}  // namespace

TEST_F(CallbackDelegatorTest, TheFirstSubscriptionSetsThePlatformCallbackOnce) {
    fake_platform::reset();
    EXPECT_EQ(subscribe(m_a), 0);
    const std::string constructor = "BtAdapterStateChangedCb::BtAdapterStateChangedCb()";
    const std::string set = "virtual void BtAdapterStateChangedCb::registerCallback()";
    EXPECT_THAT(
        fake_platform::transcript(),
        ElementsAre(in(GET_LIST), out(GET_LIST),
                    "I QVX CallbackDelegator.h: registerCallback(#) > no callback, crate callback.",
                    in(constructor), out(constructor), in(set), "call " + SET, out(set),
                    "I QVX CallbackDelegator.h: registerCallback(#) > task invoker : 0x#, "
                    "callback : 0x#"));
    EXPECT_EQ(sources(), 1U);

    fake_platform::reset();
    EXPECT_EQ(subscribe(m_b), 0);
    EXPECT_THAT(fake_platform::transcript(),
                ElementsAre(in(GET_LIST), out(GET_LIST),
                            "I QVX CallbackDelegator.h: registerCallback(#) > task invoker : 0x#, "
                            "callback : 0x#"));
}

TEST_F(CallbackDelegatorTest, TheSourceItselfIsThePlatformsUserData) {
    subscribe(m_a);
    const MutexLock lock(m_delegator->mutex());
    const auto& callbacks = m_delegator->getCallbackList(BT_ADAPTER_STATE_CHANGED);
    EXPECT_EQ(fake_platform::slot(SET).userData,
              dynamic_cast<void*>(callbacks.at(BT_ADAPTER_STATE_CHANGED).get()));
}

TEST_F(CallbackDelegatorTest, TheLastUnsubscriptionUnsetsThePlatformCallbackOnce) {
    subscribe(m_a);
    subscribe(m_b);
    EXPECT_EQ(unsubscribe(m_a), 0);
    EXPECT_EQ(fake_platform::slot(SET).unsets, 0);
    fake_platform::reset();
    EXPECT_EQ(unsubscribe(m_b), 0);
    const std::string destructor = "virtual BtAdapterStateChangedCb::~BtAdapterStateChangedCb()";
    const std::string unset = "virtual void BtAdapterStateChangedCb::unregisterCallback()";
    EXPECT_THAT(fake_platform::transcript(),
                ElementsAre(in(UNREGISTER), in(GET_LIST), out(GET_LIST), in(REMOVE),
                            "I QVX CallbackImpl.h: remove(#) > remove invoker : 0x#", out(REMOVE),
                            in(destructor), in(unset), "call " + UNSET, out(unset), out(destructor),
                            out(UNREGISTER)));
    EXPECT_EQ(sources(), 0U);

    fake_platform::reset();
    EXPECT_EQ(unsubscribe(m_b), 0);
    EXPECT_THAT(fake_platform::transcript(),
                ElementsAre(in(UNREGISTER), in(GET_LIST), out(GET_LIST),
                            "I QVX CallbackDelegator.h: unregisterCallback(#) > no callback",
                            out(UNREGISTER)));
}

TEST_F(CallbackDelegatorTest, AStrangersUnsubscriptionLeavesTheCallbackSet) {
    subscribe(m_a);
    EXPECT_EQ(unsubscribe(m_b), 0);
    EXPECT_EQ(sources(), 1U);
    EXPECT_EQ(fake_platform::slot(SET).unsets, 0);
}

TEST_F(CallbackDelegatorTest, ATypeMayComeAndGoAnyNumberOfTimes) {
    for (int i = 1; i <= 3; ++i) {
        subscribe(m_a);
        unsubscribe(m_a);
        EXPECT_EQ(fake_platform::slot(SET).sets, i);
        EXPECT_EQ(fake_platform::slot(SET).unsets, i);
    }
}

TEST_F(CallbackDelegatorTest, AnExceptionAtTheEndOfASourceEndsTheProcess) {
    subscribe(m_a);
    EXPECT_DEATH(
        {
            fake_platform::onLog([](const fake_platform::Line& line) {
                if (line.text.find("IN >> [virtual BtAdapterStateChangedCb::~") != line.text.npos) {
                    throw std::bad_alloc();
                }
            });
            try {
                unsubscribe(m_a);
            } catch (const std::bad_alloc&) {
                std::exit(0);
            }
        },
        "terminate called");
}

TEST_F(CallbackDelegatorTest, SoundTypesShareTheRegistryOfTheBluetoothTypes) {
    subscribe(m_a);
    m_delegator->registerCallback<SoundManagerSpeakerChangedCb>(SOUND_MANAGER_SPEAKER_CHANGED, &m_a,
                                                                ignoreRoute, nullptr);
    EXPECT_EQ(sources(), 2U);
    const MutexLock lock(m_delegator->mutex());
    EXPECT_EQ(&m_delegator->getCallbackList(BT_ADAPTER_STATE_CHANGED),
              &m_delegator->getCallbackList(SOUND_MANAGER_SPEAKER_CHANGED));
}

TEST_F(CallbackDelegatorTest, APlatformThatRefusesChangesNothing) {
    fake_platform::setResult(-1);
    EXPECT_EQ(subscribe(m_a), 0);
    EXPECT_EQ(sources(), 1U);
    EXPECT_EQ(unsubscribe(m_a), 0);
    EXPECT_EQ(sources(), 0U);
}

TEST_F(CallbackDelegatorTest, DestructionUnsetsWhatIsStillSet) {
    subscribe(m_a);
    m_delegator->registerCallback<SoundManagerSpeakerChangedCb>(SOUND_MANAGER_SPEAKER_CHANGED, &m_a,
                                                                ignoreRoute, nullptr);
    fake_platform::reset();
    m_delegator.reset();
    EXPECT_EQ(fake_platform::transcript().front(), in("void CallbackDelegator::deinit()"));
    EXPECT_EQ(fake_platform::transcript()[1], out("void CallbackDelegator::deinit()"));
    EXPECT_THAT(fake_platform::calls(),
                testing::UnorderedElementsAre(UNSET, "sound_manager_unset_speaker_changed_cb"));
    EXPECT_EQ(fake_platform::callbacksSet(), 0);
}

TEST_F(CallbackDelegatorTest, APluginMayUnsubscribeInItsOwnCallback) {
    TaskInvokerImpl plugin;
    int received = 0;
    std::function<void()> function = [&] {
        ++received;
        unsubscribe(plugin);
        EXPECT_EQ(fake_platform::callbacksSet(), 0) << "still set when unsubscribe returned";
    };
    subscribe(plugin, function);
    EXPECT_TRUE(fake_platform::deliver(SET, 0, BT_ADAPTER_STATE_ON));
    EXPECT_EQ(received, 1);
    EXPECT_FALSE(fake_platform::deliver(SET, 0, BT_ADAPTER_STATE_ON));
    EXPECT_EQ(sources(), 0U);
}

TEST_F(CallbackDelegatorTest, APluginSubscribedTwiceMayUnsubscribeInItsOwnCallback) {
    TaskInvokerImpl plugin;
    int received = 0;
    std::vector<std::string> transcript;
    std::function<void()> function = [&] {
        if (++received == 1) {
            fake_platform::reset();
            unsubscribe(plugin);
            transcript = fake_platform::transcript();
        }
    };
    subscribe(plugin, function);
    subscribe(plugin, function);
    EXPECT_TRUE(fake_platform::deliver(SET, 0, BT_ADAPTER_STATE_ON));
    EXPECT_EQ(received, 2) << "the running event reaches both entries";
    // When unsubscribe returns, the callback is unset and the source's destructor is logged.
    const std::string destructor = "virtual BtAdapterStateChangedCb::~BtAdapterStateChangedCb()";
    EXPECT_THAT(transcript, testing::Contains("call " + UNSET));
    EXPECT_THAT(transcript, testing::Contains(out(destructor)));
    EXPECT_EQ(fake_platform::count(destructor), 2);
}

TEST_F(CallbackDelegatorTest, APluginMayLeaveAndComeBackInItsOwnCallback) {
    TaskInvokerImpl plugin;
    int received = 0;
    std::function<void()> function = [&] {
        ++received;
        unsubscribe(plugin);
        subscribe(plugin);
    };
    subscribe(plugin, function);
    EXPECT_TRUE(fake_platform::deliver(SET, 0, BT_ADAPTER_STATE_ON));
    EXPECT_EQ(received, 1);
    EXPECT_EQ(sources(), 1U);
    EXPECT_EQ(fake_platform::callbacksSet(), 1);
}

TEST_F(CallbackDelegatorTest, TheDelegatorMayGoDuringAnEvent) {
    std::function<void()> function = [&] { m_delegator.reset(); };
    std::function<void()> nothing = [] {};
    subscribe(m_a, function);
    subscribe(m_b, nothing);
    EXPECT_TRUE(fake_platform::deliver(SET, 0, BT_ADAPTER_STATE_ON));
    EXPECT_EQ(fake_platform::callbacksSet(), 0);
}

TEST(CallbackDelegatorSingletonTest, IsMadeOnceAndNotAgainAfterItsEnd) {
    // Called in a new process, which runs only this test: others have used this process's
    // singleton.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto life = [] {
        CallbackDelegator* first = Singleton<CallbackDelegator>::getInstance();
        EXPECT_NE(first, nullptr);
        EXPECT_EQ(Singleton<CallbackDelegator>::getInstance(), first);
        EXPECT_EQ(fake_platform::count("IN >> [void CallbackDelegator::init()("), 1);
        Singleton<CallbackDelegator>::instance().reset();
        EXPECT_EQ(fake_platform::count("IN >> [void CallbackDelegator::deinit()("), 1);
        EXPECT_EQ(Singleton<CallbackDelegator>::getInstance(), nullptr);
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(life(), testing::ExitedWithCode(0), "");
}

TEST(CallbackTypeTest, GroupAndIndexMakeTheValue) {
    EXPECT_EQ(sizeof(CallbackType), 4U);
    EXPECT_EQ(BT_HOST_CONNECTION_STATE_CHANGED, (1U << 24) | 1U);
    EXPECT_EQ(SOUND_MANAGER_MULTIVIEW_SPEAKER_CHANGED, (3U << 24) | 2U);
}
