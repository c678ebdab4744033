#include "orientation.h"

#include <vaultpad-platform/display-rotator.h>
#include <vaultpad-platform/sensor.h>
#include <vaultpad/ta-protocol.h>

#include "log.h"

namespace vaultpad {

namespace {

int portrait() {
    CA_LOG_INFO("ORIENTATION : PORTRAIT");
    return VAULTPAD_TA_ORIENTATION_PORTRAIT;
}

int portraitReversed() {
    CA_LOG_INFO("ORIENTATION : PORTRAIT REVERSED");
    return VAULTPAD_TA_ORIENTATION_PORTRAIT_REVERSED;
}

int rotatorOrientation() {
    int status = -1;
    display_rotator_get_status(&status);
    switch (status) {
        case VAULTPAD_ROTATOR_PORTRAIT:
            return portrait();
        case VAULTPAD_ROTATOR_PORTRAIT_REVERSED:
            return portraitReversed();
        default:
            return VAULTPAD_TA_ORIENTATION_LANDSCAPE;
    }
}

// Reads a started listener; what its first value does not decide stays as it was.
int readListener(sensor_listener_h listener, int fallback) {
    sensor_event_s event{};
    const int error = sensor_listener_read_data(listener, &event);
    if (error != 0) {
        CA_LOG_ERROR("sensor_listener_read_data failed (%d)", error);
        return fallback;
    }
    switch (static_cast<int>(event.values[0])) {
        case VAULTPAD_SENSOR_PORTRAIT:
            return portrait();
        case VAULTPAD_SENSOR_PORTRAIT_REVERSED:
            return portraitReversed();
        default:
            return fallback;
    }
}

int listen(sensor_listener_h listener, int fallback) {
    const int error = sensor_listener_start(listener);
    if (error != 0) {
        CA_LOG_ERROR("sensor_listener_start failed (%d)", error);
        return fallback;
    }
    const int orientation = readListener(listener, fallback);
    sensor_listener_stop(listener);
    return orientation;
}

int sensorOrientation(int fallback) {
    bool supported = false;
    if (sensor_is_supported(VAULTPAD_SENSOR_AUTO_ROTATION, &supported) != 0 || !supported) {
        CA_LOG_ERROR("SENSOR_AUTO_ROTATION is not supported");
        return fallback;
    }
    sensor_h sensor = nullptr;
    int error = sensor_get_default_sensor(VAULTPAD_SENSOR_AUTO_ROTATION, &sensor);
    if (error != 0) {
        CA_LOG_ERROR("sensor_get_default_sensor failed (%d)", error);
        return fallback;
    }
    sensor_listener_h listener = nullptr;
    error = sensor_create_listener(sensor, &listener);
    if (error != 0) {
        CA_LOG_ERROR("sensor_create_listener failed (%d)", error);
        return fallback;
    }
    const int orientation = listen(listener, fallback);
    sensor_destroy_listener(listener);
    return orientation;
}

}  // namespace

int checkCurrentOrientation() {
    if (!display_rotator_is_supported()) {
        CA_LOG_ERROR("display rotator is not supported");
        return VAULTPAD_TA_ORIENTATION_LANDSCAPE;
    }
    return sensorOrientation(rotatorOrientation());
}

}  // namespace vaultpad
