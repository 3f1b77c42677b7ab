// The agent that BlueZ calls when a device wants to pair or to use a service.
#include "platform/host/bluez/exports/BluezAgent.h"

#include <dlog.h>

#include <array>
#include <cstdio>
#include <utility>

#include "platform/host/bluez/bus/BluezObjects.h"
#include "platform/host/bluez/bus/DeviceRecord.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

constexpr const char* AGENT_PATH = "/org/corvane/agent";
constexpr const char* MANAGER_PATH = "/org/bluez";
constexpr const char* MANAGER_INTERFACE = "org.bluez.AgentManager1";

std::string passkeyText(std::uint32_t passkey) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%06u", passkey);
    return text.data();
}

std::string readPath(sd_bus_message* call) {
    return readName(call, SD_BUS_TYPE_OBJECT_PATH);
}

}  // namespace

const sd_bus_vtable BluezAgent::INTERFACE[] = {
    SD_BUS_VTABLE_START(ANY_CALLER),
    SD_BUS_METHOD("Release", "", "", &onCall<&BluezAgent::cancel>, ANY_CALLER),
    SD_BUS_METHOD("Cancel", "", "", &onCall<&BluezAgent::cancel>, ANY_CALLER),
    SD_BUS_METHOD("RequestPinCode", "o", "s", &onCall<&BluezAgent::requestPinCode>, ANY_CALLER),
    SD_BUS_METHOD("DisplayPinCode", "os", "", &onCall<&BluezAgent::displayPinCode>, ANY_CALLER),
    SD_BUS_METHOD("RequestPasskey", "o", "u", &onCall<&BluezAgent::requestPasskey>, ANY_CALLER),
    SD_BUS_METHOD("DisplayPasskey", "ouq", "", &onCall<&BluezAgent::displayPasskey>, ANY_CALLER),
    SD_BUS_METHOD("RequestConfirmation", "ou", "", &onCall<&BluezAgent::requestConfirmation>,
                  ANY_CALLER),
    SD_BUS_METHOD("RequestAuthorization", "o", "", &onCall<&BluezAgent::requestAuthorization>,
                  ANY_CALLER),
    SD_BUS_METHOD("AuthorizeService", "os", "", &onCall<&BluezAgent::authorizeService>, ANY_CALLER),
    SD_BUS_VTABLE_END,
};

BluezAgent::~BluezAgent() {
    forgetQuestions();
}

bool BluezAgent::exportObject() {
    return m_settings.agent.empty() ||
           sd_bus_add_object_vtable(m_peer.bus(), nullptr, AGENT_PATH, "org.bluez.Agent1",
                                    INTERFACE, this) >= 0;
}

void BluezAgent::registerWithBluez() {
    if (m_settings.agent.empty()) {
        return;
    }
    const auto call = m_peer.makeCall(MANAGER_PATH, MANAGER_INTERFACE, "RegisterAgent");
    if (call &&
        sd_bus_message_append(call.get(), "os", AGENT_PATH, m_settings.agent.c_str()) >= 0) {
        m_peer.send(call, [this](sd_bus_message* answer) {
            if (answer == nullptr) {
                dlog_print(DLOG_PRIORITY_ERROR, "BLUEZ", "BlueZ refuses the agent \"%s\"",
                           m_settings.agent.c_str());
            } else if (m_settings.agentIsDefault) {
                requestDefault();
            }
        });
    }
}

void BluezAgent::requestDefault() {
    const auto call = m_peer.makeCall(MANAGER_PATH, MANAGER_INTERFACE, "RequestDefaultAgent");
    if (call && sd_bus_message_append(call.get(), "o", AGENT_PATH) >= 0) {
        m_peer.send(call, [](sd_bus_message* answer) {
            if (answer == nullptr) {
                dlog_print(DLOG_PRIORITY_ERROR, "BLUEZ", "BlueZ refuses the agent as the default");
            }
        });
    }
}

void BluezAgent::forgetQuestions() {
    m_questions.clear();
    if (m_job != nullptr) {
        ecore_job_del(std::exchange(m_job, nullptr));
    }
}

template <BluezAgent::Method method>
int BluezAgent::onCall(sd_bus_message* call, void* data, sd_bus_error* error) {
    auto& self = *static_cast<BluezAgent*>(data);
    return self.m_peer.serve(call, error, [&] { (self.*method)(call); });
}

void BluezAgent::requestPinCode(sd_bus_message* call) {
    hold(call, "s");
    report(BT_AUTHENTICATION_PIN_REQUEST, readPath(call), "");
}

void BluezAgent::displayPinCode(sd_bus_message* call) {
    sd_bus_reply_method_return(call, "");
    const auto device = readPath(call);
    report(BT_AUTHENTICATION_PIN_DISPLAY, device, readName(call, SD_BUS_TYPE_STRING));
}

void BluezAgent::requestPasskey(sd_bus_message* call) {
    hold(call, "u");
    report(BT_AUTHENTICATION_PASSKEY_REQUEST, readPath(call), "");
}

// BlueZ calls this again for each digit entered on the device.
void BluezAgent::displayPasskey(sd_bus_message* call) {
    sd_bus_reply_method_return(call, "");
    const auto device = readPath(call);
    std::uint32_t passkey = 0;
    std::uint16_t entered = 0;
    checked(sd_bus_message_read(call, "uq", &passkey, &entered));
    if (entered == 0) {
        report(BT_AUTHENTICATION_PASSKEY_DISPLAY, device, passkeyText(passkey));
    }
}

void BluezAgent::requestConfirmation(sd_bus_message* call) {
    hold(call, "");
    const auto device = readPath(call);
    std::uint32_t passkey = 0;
    checked(sd_bus_message_read(call, "u", &passkey));
    report(BT_AUTHENTICATION_PASSKEY_CONFIRM, device, passkeyText(passkey));
}

void BluezAgent::requestAuthorization(sd_bus_message* call) {
    hold(call, "");
    const auto device = readPath(call);
    const LentText name(nameAt(device));
    const LentText address(m_objects.addressOf(device));
    slotOf<&bt_adapter_set_ssp_consent_request_cb>.deliver(0, name.get(), address.get());
}

void BluezAgent::authorizeService(sd_bus_message* call) {
    hold(call, "");
    const auto device = readPath(call);
    const auto service =
        serviceId(readName(call, SD_BUS_TYPE_STRING), m_objects.find(device, DEVICE_INTERFACE));
    const LentText name(nameAt(device));
    const LentText address(m_objects.addressOf(device));
    slotOf<&bt_device_set_auth_event_cb>.deliver(0, name.get(), address.get(), service);
}

// BlueZ no longer waits for an answer.
void BluezAgent::cancel(sd_bus_message* call) {
    m_questions.clear();
    sd_bus_reply_method_return(call, "");
}

// The answer is delayed until all received messages are handled, because a cancellation may
// be among them.
void BluezAgent::hold(sd_bus_message* call, const char* answer) {
    m_questions.push_back({BluezMessage(sd_bus_message_ref(call)), answer});
    if (m_job == nullptr) {
        m_job = ecore_job_add(
            [](void* self) {
                static_cast<BluezAgent*>(self)->m_job = nullptr;
                static_cast<BluezAgent*>(self)->answerAll();
            },
            this);
    }
}

void BluezAgent::answerAll() {
    for (const auto& question : std::exchange(m_questions, {})) {
        auto* const call = question.call.get();
        if (!m_settings.agentAccepts) {
            sd_bus_reply_method_errorf(call, "org.bluez.Error.Rejected",
                                       "rejected by the settings");
        } else if (question.answer == "s") {
            sd_bus_reply_method_return(call, "s", "0000");
        } else if (question.answer == "u") {
            sd_bus_reply_method_return(call, "u", std::uint32_t{0});
        } else {
            sd_bus_reply_method_return(call, "");
        }
    }
    m_peer.flush();
}

void BluezAgent::report(bt_authentication_type_info_e type, const std::string& device,
                        const std::string& key) {
    const LentText name(nameAt(device));
    const LentText address(m_objects.addressOf(device));
    const LentText lentKey(key);
    slotOf<&bt_adapter_set_authentication_req_cb>.deliver(0, type, name.get(), address.get(),
                                                          lentKey.get());
}

std::string BluezAgent::nameAt(const std::string& device) const {
    return nameOf(m_objects.find(device, DEVICE_INTERFACE));
}

}  // namespace corvane::host
