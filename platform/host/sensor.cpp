#include <vaultpad-platform/sensor.h>

#include <atomic>
#include <chrono>
#include <memory>

#include "call-guard.h"
#include "handle-table.h"
#include "television.h"

namespace {

using vaultpad::host::HandleTable;
using vaultpad::host::kFailure;
using vaultpad::host::PanelPosition;

constexpr float kLandscape = 1;
constexpr int kGoodAccuracy = 3;

struct Listener {
    std::atomic<bool> started{false};
};

using Listeners = HandleTable<Listener>;

PanelPosition sensorPosition() {
    const auto settings = vaultpad::host::television();
    return settings ? settings->sensor : PanelPosition::kNone;
}

bool isSupported(int type) {
    return type == VAULTPAD_SENSOR_AUTO_ROTATION && sensorPosition() != PanelPosition::kNone;
}

/* The one sensor. */
sensor_h autoRotationSensor() {
    static void* const sensor = vaultpad::host::makeHandle();
    return sensor;
}

float readingFor(PanelPosition position) {
    switch (position) {
        case PanelPosition::kPortrait:
            return VAULTPAD_SENSOR_PORTRAIT;
        case PanelPosition::kPortraitReversed:
            return VAULTPAD_SENSOR_PORTRAIT_REVERSED;
        default:
            return kLandscape;
    }
}

unsigned long long microsecondsNow() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<unsigned long long>(std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

}  // namespace

int sensor_is_supported(int type, bool* supported) {
    if (supported == nullptr || !vaultpad::host::television()) {
        return kFailure;
    }
    *supported = isSupported(type);
    return 0;
}

int sensor_get_default_sensor(int type, sensor_h* sensor) {
    if (sensor == nullptr || !isSupported(type)) {
        return kFailure;
    }
    *sensor = autoRotationSensor();
    return 0;
}

int sensor_create_listener(sensor_h sensor, sensor_listener_h* listener) {
    if (listener == nullptr || sensor != autoRotationSensor()) {
        return kFailure;
    }
    return vaultpad::host::orFailure(kFailure, [listener]() {
        *listener = Listeners::instance().add(std::make_shared<Listener>());
        return 0;
    });
}

int sensor_listener_start(sensor_listener_h listener) {
    const auto found = Listeners::instance().find(listener);
    if (!found) {
        return kFailure;
    }
    found->started = true;
    return 0;
}

int sensor_listener_stop(sensor_listener_h listener) {
    const auto found = Listeners::instance().find(listener);
    return found && found->started.exchange(false) ? 0 : kFailure;
}

int sensor_listener_read_data(sensor_listener_h listener, sensor_event_s* event) {
    const auto found = Listeners::instance().find(listener);
    const PanelPosition position = sensorPosition();
    if (!found || !found->started || event == nullptr || position == PanelPosition::kNone) {
        return kFailure;
    }
    *event = {};
    event->accuracy = kGoodAccuracy;
    event->timestamp = microsecondsNow();
    event->value_count = 1;
    event->values[0] = readingFor(position);
    return 0;
}

int sensor_destroy_listener(sensor_listener_h listener) {
    return Listeners::instance().take(listener) ? 0 : kFailure;
}
