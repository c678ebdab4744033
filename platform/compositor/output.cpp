#include "output.h"

#include <wayland-server-protocol.h>

#include "resource.h"

namespace vaultpad::compositor {

namespace {

constexpr int kOutputVersion = 3;
constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kWidthMillimetres = 1210;
constexpr int kHeightMillimetres = 680;
constexpr int kMilliHertz = 60000;

void bindOutput(wl_client* client, void*, uint32_t version, uint32_t id) {
    static constexpr struct wl_output_interface kOutput = {destroyResource};
    wl_resource* const output =
        makeResource(client, &wl_output_interface, static_cast<int>(version), id, &kOutput, nullptr);
    if (output == nullptr) {
        return;
    }
    wl_output_send_geometry(output, 0, 0, kWidthMillimetres, kHeightMillimetres, WL_OUTPUT_SUBPIXEL_UNKNOWN,
                            "Vault Pad", "development host", WL_OUTPUT_TRANSFORM_NORMAL);
    wl_output_send_mode(output, WL_OUTPUT_MODE_CURRENT | WL_OUTPUT_MODE_PREFERRED, kWidth, kHeight, kMilliHertz);
    if (version >= WL_OUTPUT_SCALE_SINCE_VERSION) {
        wl_output_send_scale(output, 1);
    }
    if (version >= WL_OUTPUT_DONE_SINCE_VERSION) {
        wl_output_send_done(output);
    }
}

}  // namespace

void offerOutput(wl_display* display) {
    wl_global_create(display, &wl_output_interface, kOutputVersion, nullptr, bindOutput);
}

}  // namespace vaultpad::compositor
