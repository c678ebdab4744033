/* A Wayland compositor on a thread of its own that knows surfaces and the key router. */
#ifndef VAULTPAD_TESTS_HOST_PLATFORM_TEST_COMPOSITOR_H
#define VAULTPAD_TESTS_HOST_PLATFORM_TEST_COMPOSITOR_H

#include <wayland-server-core.h>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

/* A request about keys as it arrived. */
struct KeyRequest {
    bool grab; /* or release */
    uint32_t mode;
    uint32_t surface; /* the surface's id */
    std::vector<std::string> names;
};

class TestCompositor {
public:
    /* How it answers requests about keys. */
    enum class Manner { kGrants, kRefuses, kGrantsOnce, kIsSilent, kEndsTheConnection };

    explicit TestCompositor(Manner manner);
    ~TestCompositor();
    TestCompositor(const TestCompositor&) = delete;
    TestCompositor& operator=(const TestCompositor&) = delete;

    /* The client's end of its connection; the client closes it. */
    int clientSocket() const { return clientSocket_; }

    std::vector<KeyRequest> requests();

    /* How often a client has let go of the key router. */
    int releases();

private:
    struct Handlers;
    friend struct Handlers;

    void record(wl_client* client, wl_resource* router, uint32_t serial, KeyRequest request);

    const Manner manner_;
    wl_display* const display_;
    int clientSocket_ = -1;
    int stop_ = -1; /* event descriptor that ends the thread */
    wl_event_source* stopSource_ = nullptr;
    std::mutex mutex_;
    std::vector<KeyRequest> requests_;
    int releases_ = 0;
    std::thread thread_;
};

#endif
