// The agent that BlueZ asks when a device wants to pair or to use a service. There
// is one only if it is configured: on a desktop it would take the questions away
// from the user.
#pragma once

#include <Ecore.h>
#include <bluetooth.h>
#include <systemd/sd-bus.h>

#include <string>
#include <vector>

#include "platform/host/bluetooth/bluez/bus/BluezPeer.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

class BluezObjects;

/// Every question is reported, held, and answered by the settings: the platform's
/// interface has no function for an answer.
///
/// Owner: BluezClient. Threads: main thread. Errors: what a callback throws leaves through
/// the main loop; the question is answered nevertheless.
class BluezAgent {
public:
    /// All of them outlive this.
    BluezAgent(const Settings::Bluez& settings, const BluezObjects& objects, BluezPeer& peer)
        : m_settings(settings), m_objects(objects), m_peer(peer) {}
    ~BluezAgent();
    BluezAgent(const BluezAgent&) = delete;
    BluezAgent& operator=(const BluezAgent&) = delete;

    /// There is a connection to the bus. False if the agent can't be offered there.
    bool offer();

    /// There is a new owner of org.bluez.
    void enroll();

    /// The connection, or BlueZ, has gone.
    void forget();

private:
    struct Question {
        BluezMessage call;
        std::string answer;  // D-Bus type of what an accepting answer carries
    };
    using Serve = void (BluezAgent::*)(sd_bus_message* call);

    void requestDefault();
    template <Serve serve>
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

    static const sd_bus_vtable interface[];

    const Settings::Bluez& m_settings;
    const BluezObjects& m_objects;
    BluezPeer& m_peer;
    std::vector<Question> m_questions;
    Ecore_Job* m_job = nullptr;
};

}  // namespace corvane::host
