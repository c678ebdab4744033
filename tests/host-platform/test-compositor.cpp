#include "test-compositor.h"

#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <wayland-server-protocol.h>

#include <cstring>
#include <utility>

#include "tizen-keyrouter-server.h"

namespace {

constexpr int kCompositorVersion = 4;
constexpr int kRouterVersion = 1;

std::vector<std::string> unpack(const wl_array* names) {
    std::vector<std::string> result;
    const char* const begin = static_cast<const char*>(names->data);
    for (const char* name = begin; name < begin + names->size; name += std::strlen(name) + 1) {
        result.emplace_back(name);
    }
    return result;
}

}  // namespace

struct TestCompositor::Handlers {
    static void setList(wl_client* client, wl_resource* router, uint32_t serial, wl_resource* surface, uint32_t mode,
                        wl_array* names) {
        of(router)->record(client, router, serial, {true, mode, wl_resource_get_id(surface), unpack(names)});
    }

    static void unsetList(wl_client* client, wl_resource* router, uint32_t serial, wl_resource* surface,
                          wl_array* names) {
        of(router)->record(client, router, serial, {false, 0, wl_resource_get_id(surface), unpack(names)});
    }

    static void destroyRouter(wl_client*, wl_resource* router) {
        {
            const std::lock_guard lock(of(router)->mutex_);
            ++of(router)->releases_;
        }
        wl_resource_destroy(router);
    }

    static void bindRouter(wl_client* client, void* data, uint32_t version, uint32_t id) {
        static constexpr struct tizen_keyrouter_interface kRouter = {destroyRouter, setList, unsetList};
        wl_resource* const router =
            wl_resource_create(client, &tizen_keyrouter_interface, static_cast<int>(version), id);
        wl_resource_set_implementation(router, &kRouter, data, nullptr);
    }

    static void createSurface(wl_client* client, wl_resource* compositor, uint32_t id) {
        wl_resource* const surface =
            wl_resource_create(client, &wl_surface_interface, wl_resource_get_version(compositor), id);
        wl_resource_set_implementation(surface, nullptr, nullptr, nullptr);
    }

    static void bindCompositor(wl_client* client, void* data, uint32_t version, uint32_t id) {
        static constexpr struct wl_compositor_interface kCompositor = {createSurface, nullptr};
        wl_resource* const compositor =
            wl_resource_create(client, &wl_compositor_interface, static_cast<int>(version), id);
        wl_resource_set_implementation(compositor, &kCompositor, data, nullptr);
    }

    static int stop(int, uint32_t, void* data) {
        wl_display_terminate(static_cast<wl_display*>(data));
        return 0;
    }

    static TestCompositor* of(wl_resource* router) {
        return static_cast<TestCompositor*>(wl_resource_get_user_data(router));
    }
};

TestCompositor::TestCompositor(Manner manner) : manner_(manner), display_(wl_display_create()) {
    int ends[2];
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    clientSocket_ = ends[0];
    wl_global_create(display_, &wl_compositor_interface, kCompositorVersion, this, Handlers::bindCompositor);
    wl_global_create(display_, &tizen_keyrouter_interface, kRouterVersion, this, Handlers::bindRouter);
    stop_ = eventfd(0, EFD_CLOEXEC);
    stopSource_ =
        wl_event_loop_add_fd(wl_display_get_event_loop(display_), stop_, WL_EVENT_READABLE, Handlers::stop, display_);
    EXPECT_NE(wl_client_create(display_, ends[1]), nullptr);
    thread_ = std::thread([this]() { wl_display_run(display_); });
}

TestCompositor::~TestCompositor() {
    EXPECT_EQ(eventfd_write(stop_, 1), 0);
    thread_.join();
    wl_event_source_remove(stopSource_);
    wl_display_destroy_clients(display_);
    wl_display_destroy(display_);
    close(stop_);
}

std::vector<KeyRequest> TestCompositor::requests() {
    const std::lock_guard lock(mutex_);
    return requests_;
}

int TestCompositor::releases() {
    const std::lock_guard lock(mutex_);
    return releases_;
}

void TestCompositor::record(wl_client* client, wl_resource* router, uint32_t serial, KeyRequest request) {
    bool first = false;
    {
        const std::lock_guard lock(mutex_);
        first = requests_.empty();
        requests_.push_back(std::move(request));
    }
    switch (manner_ == Manner::kGrantsOnce ? (first ? Manner::kGrants : Manner::kIsSilent) : manner_) {
        case Manner::kGrants:
            tizen_keyrouter_send_keygrab_result(router, serial, TIZEN_KEYROUTER_RESULT_OK);
            break;
        case Manner::kRefuses:
            tizen_keyrouter_send_keygrab_result(router, serial, TIZEN_KEYROUTER_RESULT_REFUSED);
            break;
        case Manner::kGrantsOnce:
        case Manner::kIsSilent:
            break;
        case Manner::kEndsTheConnection:
            wl_client_post_no_memory(client);
            break;
    }
}
