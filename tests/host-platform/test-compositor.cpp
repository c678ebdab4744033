#include "test-compositor.h"

#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

using vaultpad::compositor::KeyRequest;
using vaultpad::compositor::KeyResult;
using vaultpad::compositor::offerKeyRouter;
using vaultpad::compositor::SurfaceObserver;
using vaultpad::compositor::Surfaces;

namespace {

int stop(int, uint32_t, void* display) {
    wl_display_terminate(static_cast<wl_display*>(display));
    return 0;
}

}  // namespace

TestCompositor::TestCompositor(Manner manner) : manner_(manner), display_(wl_display_create()) {
    int ends[2];
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    clientSocket_ = ends[0];
    surfaces_ = std::make_unique<Surfaces>(display_, static_cast<SurfaceObserver&>(*this));
    offerKeyRouter(display_, *this);
    stop_ = eventfd(0, EFD_CLOEXEC);
    stopSource_ = wl_event_loop_add_fd(wl_display_get_event_loop(display_), stop_, WL_EVENT_READABLE, stop, display_);
    EXPECT_NE(wl_client_create(display_, ends[1]), nullptr);
    thread_ = std::thread([this]() { wl_display_run(display_); });
}

TestCompositor::~TestCompositor() {
    EXPECT_EQ(eventfd_write(stop_, 1), 0);
    thread_.join();
    wl_event_source_remove(stopSource_);
    wl_display_destroy_clients(display_);
    surfaces_.reset();
    wl_display_destroy(display_);
    close(stop_);
}

std::vector<RecordedRequest> TestCompositor::requests() {
    const std::lock_guard lock(mutex_);
    return requests_;
}

int TestCompositor::releases() {
    const std::lock_guard lock(mutex_);
    return releases_;
}

void TestCompositor::released(wl_client*) {
    const std::lock_guard lock(mutex_);
    ++releases_;
}

std::optional<TestCompositor::KeyResults> TestCompositor::handle(wl_client* client, const KeyRequest& request) {
    bool first = false;
    {
        const std::lock_guard lock(mutex_);
        first = requests_.empty();
        requests_.push_back({request.grab, request.mode, wl_resource_get_id(request.surface), request.names});
    }
    switch (manner_ == Manner::kGrantsOnce ? (first ? Manner::kGrants : Manner::kIsSilent) : manner_) {
        case Manner::kGrants:
            return KeyResults(request.names.size(), KeyResult::kOk);
        case Manner::kRefuses:
            return KeyResults(request.names.size(), KeyResult::kRefused);
        case Manner::kGrantsOnce:
        case Manner::kIsSilent:
            break;
        case Manner::kEndsTheConnection:
            wl_client_post_no_memory(client);
            break;
    }
    return std::nullopt;
}
