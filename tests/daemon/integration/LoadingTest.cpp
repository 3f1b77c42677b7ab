// Plugins that fail to load, and the effect on the other plugins.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>

#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The daemon has priorities for the first two names, so the load order of the three is known.
constexpr const char* FIRST = "libbleapp.so";
constexpr const char* SECOND = "libbtapp-lite.so";
constexpr const char* THIRD = "libother.so";

class DaemonLoadingTest : public testing::Test {
protected:
    void addTextFile(const std::string& name) {
        std::ofstream(m_sandbox.plugins() / name) << "not a library\n";
    }

    Sandbox m_sandbox;
};

struct Failure {
    const char* name;
    const char* fixture;  // null for a file that is not a library
    const char* text;

    friend std::ostream& operator<<(std::ostream& out, const Failure& failure) {
        return out << failure.name;
    }
};

class DaemonFailingPluginTest : public DaemonLoadingTest,
                                public testing::WithParamInterface<Failure> {
protected:
    void addFailing(const std::string& name) {
        if (GetParam().fixture == nullptr) {
            addTextFile(name);
        } else {
            m_sandbox.addPlugin(name, GetParam().fixture);
        }
    }
};

TEST_P(DaemonFailingPluginTest, IsReportedAndTheOthersAreLoaded) {
    m_sandbox.addPlugin(FIRST);
    addFailing(SECOND);
    m_sandbox.addPlugin(THIRD);
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_THAT(outcome.log.behind("start dlopen : "), ElementsAre(FIRST, SECOND, THIRD));
    EXPECT_EQ(outcome.log.ofPriority("E").transcript(),
              std::string("E QVX: CommonDaemon.cpp: loadPlugins(#) > Exception : ") +
                  GetParam().text + '\n');
    for (const std::string name : {FIRST, THIRD}) {
        EXPECT_EQ(outcome.log.count(name + ": init"), 1U);
        EXPECT_EQ(outcome.log.count(name + ": deinit"), 1U);
    }
    EXPECT_FALSE(outcome.log.contains(std::string(SECOND) + ": deinit"));
    EXPECT_EQ(outcome.status, 0);
}

TEST_P(DaemonFailingPluginTest, HasItsLibraryClosedBeforeTheNextIsLoaded) {
    addFailing(FIRST);
    m_sandbox.addPlugin(SECOND);
    const Log log = m_sandbox.startAndTerminate().log;
    const Log first = log.upTo(std::string("load plugin : ") + SECOND);
    const std::string name = FIRST;
    EXPECT_EQ(first.count(name + ": opened"), GetParam().fixture == nullptr ? 0U : 1U);
    EXPECT_EQ(first.count(name + ": closed"), first.count(name + ": opened"));
    EXPECT_EQ(log.count(name + ": closed"), first.count(name + ": closed"));
}

// The failed plugin is still in the daemon's list. At shutdown it is unloaded like the others, with
// nothing left to do.
TEST_P(DaemonFailingPluginTest, IsUnloadedAndDeletedAgainBeforeTheLowerOnes) {
    addFailing(FIRST);
    m_sandbox.addPlugin(SECOND);
    const Outcome outcome = m_sandbox.startAndTerminate();
    const Log shutDown = outcome.log.from("IN >> [void CommonDaemon::unloadPlugins()")
                             .upTo("OUT << [void CommonDaemon::unloadPlugins()");
    EXPECT_EQ(shutDown.transcript(),
              R"(D QVX: log.h: ApiTracker(#) > IN >> [void CommonDaemon::unloadPlugins()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [void Plugin::unload()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [void Plugin::unloadServicePlugin()(#)]
D QVX: log.h: ~ApiTracker(#) > OUT << [void Plugin::unloadServicePlugin()(#)]
D QVX: log.h: ~ApiTracker(#) > OUT << [void Plugin::unload()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [void Plugin::destroy()(#)]
D QVX: log.h: ~ApiTracker(#) > OUT << [void Plugin::destroy()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [void Plugin::unload()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [void Plugin::unloadServicePlugin()(#)]
I QVX: Plugin.cpp: unloadServicePlugin(#) > start deinit func
I FIXTURE: libbtapp-lite.so: deinit
I QVX: Plugin.cpp: unloadServicePlugin(#) > end deinit func
I FIXTURE: libbtapp-lite.so: closed
D QVX: log.h: ~ApiTracker(#) > OUT << [void Plugin::unloadServicePlugin()(#)]
D QVX: log.h: ~ApiTracker(#) > OUT << [void Plugin::unload()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [void Plugin::destroy()(#)]
D QVX: log.h: ~ApiTracker(#) > OUT << [void Plugin::destroy()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [void TaskInvokerImpl::terminateTaskExecutor()(#)]
D QVX: log.h: ~ApiTracker(#) > OUT << [void TaskInvokerImpl::terminateTaskExecutor()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [void TaskInvokerImpl::terminateTaskExecutor()(#)]
D QVX_TPL_CONTEXT: TPLContext.h : TerminateSync(#) [@1] > Entered
D QVX_TPL_CONTEXT: TPLContext.h : CTerminateJob(#)  TerminateJob created
D QVX_TPL_CONTEXT: TPLContext.h : CTerminateJobSync(#)  CTerminateJobSync created
D QVX_TPL_CONTEXT: TPLContext.h : _InvokeJob(#) [@1] > Entered
D QVX_TPL_CONTEXT: TPLContext.h : _InvokeJob(#)  task is queued
D QVX_TPL_CONTEXT: TPLContext.h : _InvokeJob(#)  task is invoked
D QVX_TPL_CONTEXT: TPLContext.h : _ProcessJob(#) [@1] > Entered
D QVX_TPL_CONTEXT: TPLContext.h : _ProcessJob(#)  task is poped
D QVX_TPL_CONTEXT: TPLContext.h : _Terminate(#)  _Terminate
D QVX_TPL_CONTEXT: TPLContext.h : ~CTerminateJobSync(#)  CTerminateJobSync destroyed
D QVX_TPL_CONTEXT: TPLContext.h : ~CTerminateJob(#)  TerminateJob destroyed
D QVX_TPL_CONTEXT: TPLContext.h : _ProcessJob(#) [@1]> Left
D QVX_TPL_CONTEXT: TPLContext.h : _InvokeJob(#) [@1]> Left
D QVX_TPL_CONTEXT: TPLContext.h : TerminateSync(#)  Sync result(1)
D QVX_TPL_CONTEXT: TPLContext.h : TerminateSync(#) [@1]> Left
D QVX: log.h: ~ApiTracker(#) > OUT << [void TaskInvokerImpl::terminateTaskExecutor()(#)]
D QVX: log.h: ~ApiTracker(#) > OUT << [void CommonDaemon::unloadPlugins()(#)]
)");
    EXPECT_EQ(outcome.status, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Failures, DaemonFailingPluginTest,
    testing::Values(
        Failure{"NoLibrary", nullptr, "fail to open plugin"},
        Failure{"NoInit", "no_init", "fail to find init function"},
        Failure{"MinusOne", "init_returns_minus_1", "plugin return negative value : -1"},
        Failure{"MinusThree", "init_returns_minus_3", "plugin return negative value : -3"},
        Failure{"RuntimeError", "init_throws_runtime_error", "from init"},
        Failure{"OwnClass", "init_throws_own_class", "an exception of the library's own"},
        Failure{"AfterSubscribing", "subscribes_then_fails", "plugin return negative value : -1"}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(DaemonLoadingTest, AnInitEntryThatReturnsZeroOrMoreSucceeds) {
    m_sandbox.addPlugin("libzero.so", "ordinary");
    m_sandbox.addPlugin("libseven.so", "init_returns_7");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_THAT(outcome.log.ofPriority("E").lines(), IsEmpty());
    EXPECT_TRUE(outcome.log.contains("libzero.so: deinit"));
    EXPECT_TRUE(outcome.log.contains("libseven.so: deinit"));
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonLoadingTest, AThrownNumberEndsTheProcessAbnormally) {
    m_sandbox.addPlugin(FIRST);
    m_sandbox.addPlugin(SECOND, "init_throws_int");
    const Outcome outcome = m_sandbox.runToItsEnd();
    EXPECT_EQ(outcome.status, -SIGABRT);
    EXPECT_TRUE(outcome.log.contains("libbtapp-lite.so: init"));
    EXPECT_FALSE(outcome.log.contains("xception : "));
    EXPECT_FALSE(outcome.log.contains("libbleapp.so: deinit"));
    EXPECT_EQ(outcome.log.ofTags({"PLATFORM"}).texts(),
              "ecore_init\nbt_product_init\nbt_audio_initialize\naccess marker\n");
}

TEST_F(DaemonLoadingTest, NothingButFailingPluginsIsAnOrderlyLifeToo) {
    addTextFile(FIRST);
    m_sandbox.addPlugin(SECOND, "no_init");
    m_sandbox.addPlugin(THIRD, "init_throws_own_class");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(outcome.log.ofPriority("E").lines().size(), 3U);
    EXPECT_TRUE(outcome.log.contains("OUT << [void CommonDaemon::terminate()"));
    EXPECT_EQ(outcome.status, 0);
}

}  // namespace
