// The agent that BlueZ calls when a device wants to pair or to use a service. It exists only
// if the settings configure it: on a desktop it would hide the questions from the user.
#pragma once

#include <Ecore.h>
#include <bluetooth.h>
#include <systemd/sd-bus.h>

#include <string>
#include <vector>

#include "platform/host/bluez/bus/BluezPeer.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

class BluezObjects;

/// Every question is reported, and answered as the settings say: the platform's interface has
/// no function for an answer.
///
/// Owner: BluezClient. Threads: main thread. Errors: what a callback throws leaves through
/// the main loop; the question is still answered.
class BluezAgent {
public:
    /// The arguments outlive this object.
    BluezAgent(const Settings::Bluez& settings, const BluezObjects& objects, BluezPeer& peer)
        : m_settings(settings), m_objects(objects), m_peer(peer) {}
    ~BluezAgent();
    BluezAgent(const BluezAgent&) = delete;
    BluezAgent& operator=(const BluezAgent&) = delete;

    /// Adds the agent's D-Bus object to a new connection. Returns false on failure.
    bool exportObject();

    /// Registers the agent with a new owner of org.bluez.
    void registerWithBluez();

    /// Drops the unanswered questions: BlueZ or the connection has ended.
    void forgetQuestions();

private:
    struct Question {
        BluezMessage call;
        std::string answer;  // D-Bus signature of an accepting answer
    };
    using Method = void (BluezAgent::*)(sd_bus_message* call);

    void requestDefault();
    template <Method method>
    static int onCall(sd_bus_message* call, void* self, sd_bus_error* error);

    void requestPinCode(sd_bus_message* call);
    void displayPinCode(sd_bus_message* call);
    void requestPasskey(sd_bus_message* call);
    void displayPasskey(sd_bus_message* call);
    void requestConfirmation(sd_bus_message* call);
    void requestAuthorization(sd_bus_message* call);
    void authorizeService(sd_bus_message* call);
    void cancel(sd_bus_message* call);

    void hold(sd_bus_message* call, const char* answer);
    void answerAll();
    void report(bt_authentication_type_info_e type, const std::string& device,
                const std::string& key);
    std::string nameAt(const std::string& device) const;

    static const sd_bus_vtable INTERFACE[];

    const Settings::Bluez& m_settings;
    const BluezObjects& m_objects;
    BluezPeer& m_peer;
    std::vector<Question> m_questions;
    Ecore_Job* m_job = nullptr;
};

}  // namespace corvane::host
