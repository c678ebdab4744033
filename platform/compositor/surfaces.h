/* Surfaces and their buffers. Nothing is drawn: a buffer is given back as soon as it was committed. */
#ifndef VAULTPAD_COMPOSITOR_SURFACES_H
#define VAULTPAD_COMPOSITOR_SURFACES_H

#include <wayland-server-core.h>

#include <functional>
#include <vector>

namespace vaultpad::compositor {

/* What the rest of the compositor learns about windows. */
class SurfaceObserver {
public:
    virtual ~SurfaceObserver() = default;
    virtual void surfaceMapped(wl_resource* surface) = 0;
    virtual void surfaceUnmapped(wl_resource* surface) = 0;
    virtual void surfaceDestroyed(wl_resource* surface) = 0;
};

class Surfaces;

/* One wl_surface; goes with it. */
class Surface {
public:
    Surface(Surfaces& all, wl_resource* resource);
    ~Surface();
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    static Surface* of(wl_resource* surface);

    void attach(wl_resource* buffer);
    void addFrame(wl_resource* callback) { frames_.push_back(callback); }
    void removeFrame(wl_resource* callback);
    void commit();
    void answerFrames();

    /* Makes the surface a window: beforeCommit is run ahead of each commit. An empty function takes the role back. */
    void setRole(std::function<void()> beforeCommit);

private:
    struct BufferListener {
        wl_listener listener;
        Surface* surface;
    };

    static void onBufferGone(wl_listener* listener, void* data);
    void forgetBuffer();
    void unmap();

    Surfaces& all_;
    wl_resource* const resource_;
    wl_resource* buffer_ = nullptr; /* attached and not yet committed */
    BufferListener bufferGone_{};
    bool attached_ = false;
    bool mapped_ = false;
    std::vector<wl_resource*> frames_;
    std::function<void()> beforeCommit_;
};

/* The globals wl_compositor and wl_subcompositor. */
class Surfaces {
public:
    Surfaces(wl_display* display, SurfaceObserver& observer);
    ~Surfaces();
    Surfaces(const Surfaces&) = delete;
    Surfaces& operator=(const Surfaces&) = delete;

    SurfaceObserver& observer() { return observer_; }
    void add(Surface* surface) { surfaces_.push_back(surface); }
    void remove(Surface* surface);

    /* Has the frame callbacks answered, soon. */
    void scheduleFrame();

private:
    SurfaceObserver& observer_;
    wl_event_source* frameTimer_;
    bool frameScheduled_ = false;
    std::vector<Surface*> surfaces_;
};

}  // namespace vaultpad::compositor

#endif
