#include <vaultpad-platform/bt-audio.h>

#include "call-guard.h"
#include "television.h"

int bt_audio_stop_streaming(void) {
    using vaultpad::host::BluetoothStop;
    const auto settings = vaultpad::host::television();
    switch (settings ? settings->bluetoothStop : BluetoothStop::kFails) {
        case BluetoothStop::kOk:
            return 0;
        case BluetoothStop::kNotStreaming:
            return VAULTPAD_BT_NOT_STREAMING;
        default:
            return vaultpad::host::kFailure;
    }
}
