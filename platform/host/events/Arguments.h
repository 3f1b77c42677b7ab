// The arguments of the events that can be injected, in the order of the callback.
#pragma once

#include "platform/host/events/Enumerations.h"
#include "platform/host/events/EventTable.h"
#include "platform/host/events/Records.h"

namespace corvane::host {

inline constexpr Field result{"result", Kind::Integer, "0"};
inline constexpr Field name{"name", Kind::Text, defaultName};
inline constexpr Field address{"address", Kind::Text, defaultAddress};

inline constexpr Field adapterStateChanged[] = {
    result,
    {"state", Kind::Enumeration, "on", adapterState},
};

inline constexpr Field adapterNameChanged[] = {
    {"name", Kind::Text, "Living room TV"},
};

inline constexpr Field adapterSspConsentRequest[] = {result, name, address};

inline constexpr Field adapterAuthenticationRequest[] = {
    result,
    {"type", Kind::Enumeration, "passkey-confirm", authenticationType},
    name,
    address,
    {"key", Kind::Text, "123456"},
};

inline constexpr Field adapterDiscoveryStateChanged[] = {
    result,
    {"state", Kind::Enumeration, "found", discoveryState},
    {"info", Kind::Record, "", {}, discoveryInfo},
};

inline constexpr Field deviceAuthEvent[] = {
    result,
    name,
    address,
    {"service", Kind::Enumeration, "a2dp-source", profileService},
};

inline constexpr Field deviceBondCreated[] = {
    result,
    {"info", Kind::Record, "", {}, deviceInfo},
};

inline constexpr Field deviceConnectionStateChanged[] = {
    {"connected", Kind::Boolean, "true"},
    {"info", Kind::Record, "", {}, connectionInfo},
};

inline constexpr Field deviceServiceSearched[] = {
    result,
    {"info", Kind::Record, "", {}, sdpInfo},
};

// A flag, then whose it is.
inline constexpr Field connected{"connected", Kind::Boolean, "true"};
inline constexpr Field resultAddress[] = {result, address};
inline constexpr Field connectedAddress[] = {connected, address};
inline constexpr Field resultConnectedAddress[] = {result, connected, address};

inline constexpr Field agScoStateChanged[] = {
    result,
    {"opened", Kind::Boolean, "true"},
};

inline constexpr Field agSpeakerGainChanged[] = {
    {"gain", Kind::Integer, "7"},
};

inline constexpr Field audioStateChanged[] = {
    {"state", Kind::Enumeration, "started", audioState},
    address,
};

inline constexpr Field audioConnectionStateChanged[] = {
    result,
    connected,
    address,
    {"profile", Kind::Enumeration, "a2dp-sink", audioProfile},
};

inline constexpr Field volume{"volume", Kind::Short, "64"};
inline constexpr Field volumeOnly[] = {volume};
inline constexpr Field addressVolume[] = {address, volume};

inline constexpr Field keyEventReceived[] = {
    {"event", Kind::Record, "", {}, keyEvent},
};

inline constexpr Field muteStateChanged[] = {
    address,
    {"muted", Kind::Boolean, "true"},
};

inline constexpr Field remoteFeaturesKnown[] = {
    {"features", Kind::Record, "", {}, remoteFeatures},
};

inline constexpr Field chargingStatus[] = {
    {"level", Kind::Byte, "80"},
    {"charging", Kind::Byte, "1"},
};

inline constexpr Field accessoryConnection[] = {
    connected,
    {"info", Kind::Record, "", {}, deviceInfo},
};

inline constexpr Field batteryStatusReceived[] = {
    {"battery", Kind::Record, "", {}, batteryStatus},
};

inline constexpr Field switchUpdateState[] = {
    {"state", Kind::Integer, "0"},
};

inline constexpr Field remoteUpdateStatus[] = {
    {"status", Kind::Integer, "0"},
    {"progress", Kind::Byte, "50"},
};

inline constexpr Field gripDetected[] = {
    {"detected", Kind::Byte, "1"},
};

inline constexpr Field gripStateChanged[] = {
    {"state", Kind::Enumeration, "held", gripState},
};

// The stream type is no record here: the callback gets it by value.
inline constexpr Field broadcastStateChanged[] = {
    {"state", Kind::Enumeration, "streaming", broadcastState},
    {"codec", Kind::Integer, "6"},
    {"sample_rate", Kind::Integer, "48000"},
    {"channels", Kind::Integer, "2"},
};

inline constexpr Field socketConnectionStateChanged[] = {
    result,
    {"state", Kind::Enumeration, "connected", socketState},
    {"connection", Kind::Record, "", {}, socketConnection},
};

inline constexpr Field socketDataReceived[] = {
    {"received", Kind::Record, "", {}, socketData},
};

inline constexpr Field route{"route", Kind::Enumeration, "bluetooth", outputRoute};
inline constexpr Field speakerChanged[] = {route};

inline constexpr Field multiviewSpeakerChanged[] = {
    route,
    {"view", Kind::Integer, "0"},
};

}  // namespace corvane::host
