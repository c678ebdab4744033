/* The development host's compositor, its key router answering as a test wants, on a thread of its own. */
#ifndef VAULTPAD_TESTS_HOST_PLATFORM_TEST_COMPOSITOR_H
#define VAULTPAD_TESTS_HOST_PLATFORM_TEST_COMPOSITOR_H

#include <wayland-server-core.h>

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "compositor/key-router.h"
#include "compositor/surfaces.h"

/* A request about keys as it arrived. */
struct RecordedRequest {
    bool grab; /* or release */
    uint32_t mode;
    uint32_t surface; /* the surface's id */
    std::vector<std::string> names;
};

class TestCompositor : private vaultpad::compositor::KeyRequestHandler, private vaultpad::compositor::SurfaceObserver {
public:
    /* How it answers requests about keys. */
    enum class Manner { kGrants, kRefuses, kGrantsOnce, kIsSilent, kEndsTheConnection };

    explicit TestCompositor(Manner manner);
    ~TestCompositor() override;
    TestCompositor(const TestCompositor&) = delete;
    TestCompositor& operator=(const TestCompositor&) = delete;

    /* The client's end of its connection; the client closes it. */
    int clientSocket() const { return clientSocket_; }

    std::vector<RecordedRequest> requests();

    /* How often a client has let go of the key router. */
    int releases();

private:
    using KeyResults = std::vector<vaultpad::compositor::KeyResult>;

    std::optional<KeyResults> handle(wl_client* client, const vaultpad::compositor::KeyRequest& request) override;
    void released(wl_client*) override;
    void surfaceMapped(wl_resource*) override {}
    void surfaceUnmapped(wl_resource*) override {}
    void surfaceDestroyed(wl_resource*) override {}

    const Manner manner_;
    wl_display* const display_;
    std::unique_ptr<vaultpad::compositor::Surfaces> surfaces_;
    int clientSocket_ = -1;
    int stop_ = -1; /* event descriptor that ends the thread */
    wl_event_source* stopSource_ = nullptr;
    std::mutex mutex_;
    std::vector<RecordedRequest> requests_;
    int releases_ = 0;
    std::thread thread_;
};

#endif
