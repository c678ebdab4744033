#include "surfaces.h"

#include <wayland-server-protocol.h>

#include <algorithm>
#include <ctime>
#include <utility>

#include "resource.h"

namespace vaultpad::compositor {

namespace {

constexpr int kCompositorVersion = 4;
constexpr int kSubcompositorVersion = 1;
constexpr int kFrameMilliseconds = 16;

uint32_t nowMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1000000);
}

/* What is of no consequence where nothing is drawn. */
void ignoreArea(wl_client*, wl_resource*, int32_t, int32_t, int32_t, int32_t) {}
void ignoreRegion(wl_client*, wl_resource*, wl_resource*) {}
void ignoreNumber(wl_client*, wl_resource*, int32_t) {}
void ignorePlace(wl_client*, wl_resource*, int32_t, int32_t) {}
void ignoreRequest(wl_client*, wl_resource*) {}

void attach(wl_client*, wl_resource* surface, wl_resource* buffer, int32_t, int32_t) {
    Surface::of(surface)->attach(buffer);
}

void commit(wl_client*, wl_resource* surface) {
    Surface::of(surface)->commit();
}

void forgetFrame(wl_resource* callback) {
    if (auto* const surface = static_cast<Surface*>(wl_resource_get_user_data(callback))) {
        surface->removeFrame(callback);
    }
}

void frame(wl_client* client, wl_resource* surface, uint32_t id) {
    Surface* const owner = Surface::of(surface);
    if (wl_resource* const callback =
            makeResource(client, &wl_callback_interface, 1, id, nullptr, owner, forgetFrame)) {
        owner->addFrame(callback);
    }
}

void createSurface(wl_client* client, wl_resource* compositor, uint32_t id) {
    static constexpr struct wl_surface_interface kSurface = {destroyResource, attach,       ignoreArea, frame,
                                                             ignoreRegion,    ignoreRegion, commit,     ignoreNumber,
                                                             ignoreNumber,    ignoreArea,   ignorePlace};
    wl_resource* const resource = makeResource(client, &wl_surface_interface, wl_resource_get_version(compositor), id,
                                               &kSurface, nullptr, [](wl_resource* gone) { delete Surface::of(gone); });
    if (resource != nullptr) {
        auto* const surfaces = static_cast<Surfaces*>(wl_resource_get_user_data(compositor));
        wl_resource_set_user_data(resource, new Surface(*surfaces, resource));
    }
}

void createRegion(wl_client* client, wl_resource* compositor, uint32_t id) {
    static constexpr struct wl_region_interface kRegion = {destroyResource, ignoreArea, ignoreArea};
    makeResource(client, &wl_region_interface, wl_resource_get_version(compositor), id, &kRegion, nullptr);
}

void createSubsurface(wl_client* client, wl_resource* subcompositor, uint32_t id, wl_resource*, wl_resource*) {
    static constexpr struct wl_subsurface_interface kSubsurface = {destroyResource, ignorePlace,   ignoreRegion,
                                                                   ignoreRegion,    ignoreRequest, ignoreRequest};
    makeResource(client, &wl_subsurface_interface, wl_resource_get_version(subcompositor), id, &kSubsurface, nullptr);
}

}  // namespace

Surface* Surface::of(wl_resource* surface) {
    return static_cast<Surface*>(wl_resource_get_user_data(surface));
}

Surface::Surface(Surfaces& all, wl_resource* resource) : all_(all), resource_(resource) {
    bufferGone_ = {{{}, onBufferGone}, this};
    all_.add(this);
}

Surface::~Surface() {
    all_.observer().surfaceDestroyed(resource_);
    all_.remove(this);
    forgetBuffer();
    for (wl_resource* const callback : frames_) {
        wl_resource_set_user_data(callback, nullptr);
    }
}

void Surface::onBufferGone(wl_listener* listener, void*) {
    BufferListener* gone = nullptr;
    gone = wl_container_of(listener, gone, listener);
    gone->surface->forgetBuffer();
}

void Surface::forgetBuffer() {
    if (buffer_ != nullptr) {
        wl_list_remove(&bufferGone_.listener.link);
        buffer_ = nullptr;
    }
}

void Surface::attach(wl_resource* buffer) {
    forgetBuffer();
    attached_ = true;
    buffer_ = buffer;
    if (buffer != nullptr) {
        wl_resource_add_destroy_listener(buffer, &bufferGone_.listener);
    }
}

void Surface::removeFrame(wl_resource* callback) {
    frames_.erase(std::remove(frames_.begin(), frames_.end(), callback), frames_.end());
}

void Surface::commit() {
    if (beforeCommit_) {
        beforeCommit_();
    }
    if (std::exchange(attached_, false)) {
        const bool contents = buffer_ != nullptr;
        if (contents) {
            wl_buffer_send_release(buffer_);
            forgetBuffer();
        }
        if (!contents) {
            unmap();
        } else if (beforeCommit_ && !mapped_) {
            mapped_ = true;
            all_.observer().surfaceMapped(resource_);
        }
    }
    if (!frames_.empty()) {
        all_.scheduleFrame();
    }
}

void Surface::answerFrames() {
    for (wl_resource* const callback : std::exchange(frames_, {})) {
        wl_callback_send_done(callback, nowMilliseconds());
        wl_resource_destroy(callback);
    }
}

void Surface::setRole(std::function<void()> beforeCommit) {
    beforeCommit_ = std::move(beforeCommit);
    if (!beforeCommit_) {
        unmap();
    }
}

void Surface::unmap() {
    if (std::exchange(mapped_, false)) {
        all_.observer().surfaceUnmapped(resource_);
    }
}

Surfaces::Surfaces(wl_display* display, SurfaceObserver& observer) : observer_(observer) {
    frameTimer_ = wl_event_loop_add_timer(
        wl_display_get_event_loop(display),
        [](void* data) {
            auto* const self = static_cast<Surfaces*>(data);
            self->frameScheduled_ = false;
            for (Surface* const surface : self->surfaces_) {
                surface->answerFrames();
            }
            return 0;
        },
        this);
    static constexpr struct wl_compositor_interface kCompositor = {createSurface, createRegion};
    makeGlobal<&wl_compositor_interface, &kCompositor>(display, kCompositorVersion, this);
    static constexpr struct wl_subcompositor_interface kSubcompositor = {destroyResource, createSubsurface};
    makeGlobal<&wl_subcompositor_interface, &kSubcompositor>(display, kSubcompositorVersion, this);
}

Surfaces::~Surfaces() {
    wl_event_source_remove(frameTimer_);
}

void Surfaces::remove(Surface* surface) {
    surfaces_.erase(std::remove(surfaces_.begin(), surfaces_.end(), surface), surfaces_.end());
}

void Surfaces::scheduleFrame() {
    if (!std::exchange(frameScheduled_, true)) {
        wl_event_source_timer_update(frameTimer_, kFrameMilliseconds);
    }
}

}  // namespace vaultpad::compositor
