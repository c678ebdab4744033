#include "graphic/object-renderer.h"

#include <Ecore.h>
#include <vaultpad/ta-protocol.h>

#include <algorithm>
#include <cstdlib>

#include "exception.h"
#include "log.h"
#include "page-advice.h"

namespace vaultpad::graphic {

namespace {

// The engine redraws the whole canvas in every pass unless its client says which buffer comes next. It is the same one
// always: what earlier passes drew is still there, and only changed regions are drawn.
void* keepBuffer(void*, void* pixels) {
    return pixels;
}

// The keys of a layout share few images, and Evas loads an image again for each object that shows it unless it keeps
// some: as many as the toolkit keeps for applications that do not say. Its images may be shared with canvases of the
// client's, so its size is put back.
constexpr int kImageCacheBytes = 4 << 20;

class ImageCache {
public:
    explicit ImageCache(Evas* evas) : evas_(evas), before_(evas_image_cache_get(evas)) {
        evas_image_cache_set(evas_, std::max(before_, kImageCacheBytes));
    }
    ~ImageCache() { evas_image_cache_set(evas_, before_); }
    ImageCache(const ImageCache&) = delete;
    ImageCache& operator=(const ImageCache&) = delete;

private:
    Evas* evas_;
    int before_;
};

}  // namespace

ObjectRenderer::ObjectRenderer() : ObjectRenderer(VAULTPAD_TA_SCREEN_WIDTH, VAULTPAD_TA_SCREEN_HEIGHT) {}

ObjectRenderer::ObjectRenderer(int width, int height) : width_(width), height_(height) {}

ObjectRenderer::~ObjectRenderer() {
    if (evas_ == nullptr) {
        return;
    }
    std::free(engineInfo_->info.dest_buffer);
    ecore_thread_main_loop_begin();
    evas_free(evas_);
    evas_shutdown();
    ecore_thread_main_loop_end();
}

// Leaves the renderer as it was before lazyInit(), but for evas_init(), which is not balanced: intended.
void ObjectRenderer::abandonInit(const char* message) {
    if (evas_ != nullptr) {
        evas_free(evas_);
        evas_ = nullptr;
        engineInfo_ = nullptr;
    }
    ecore_thread_main_loop_end();
    throw exception::Exception(message);
}

void ObjectRenderer::lazyInit() {
    CA_LOG_INFO("called;");
    if (initialized_) {
        return;
    }
    ecore_thread_main_loop_begin();
    evas_init();
    const int method = evas_render_method_lookup("buffer");
    if (method <= 0) {
        abandonInit("ERROR: evas was not compiled with 'buffer' engine!");
    }
    evas_ = evas_new();
    if (evas_ == nullptr) {
        abandonInit("ERROR: could not instantiate new evas canvas_.");
    }
    evas_output_method_set(evas_, method);
    evas_output_size_set(evas_, width_, height_);
    evas_output_viewport_set(evas_, 0, 0, width_, height_);
    engineInfo_ = reinterpret_cast<Evas_Engine_Info_Buffer*>(evas_engine_info_get(evas_));
    if (engineInfo_ == nullptr) {
        abandonInit("ERROR: could not get evas engine info!");
    }
    const std::size_t rowBytes = static_cast<std::size_t>(width_) * sizeof(unsigned int);
    const std::size_t bytes = rowBytes * static_cast<std::size_t>(height_);
    void* pixels = std::malloc(bytes);
    if (pixels == nullptr) {
        abandonInit("ERROR: could not allocate canvas_ pixels!");
    }
    // The engine fills the whole buffer before it draws anything.
    if (makePages(pixels, bytes)) {
        growHeapInHugePages(bytes);
    }
    engineInfo_->info.depth_type = EVAS_ENGINE_BUFFER_DEPTH_ARGB32;
    engineInfo_->info.dest_buffer = pixels;
    engineInfo_->info.dest_buffer_row_bytes = static_cast<int>(rowBytes);
    engineInfo_->info.use_color_key = 0;
    engineInfo_->info.alpha_threshold = 0;
    engineInfo_->info.func.new_update_region = nullptr;
    engineInfo_->info.func.free_update_region = nullptr;
    if (engineInfo_->info.func.switch_buffer == nullptr) {
        engineInfo_->info.func.switch_buffer = keepBuffer;
    }
    evas_engine_info_set(evas_, reinterpret_cast<Evas_Engine_Info*>(engineInfo_));
    ecore_thread_main_loop_end();
    initialized_ = true;
}

bool ObjectRenderer::render(ContainerPointer container, std::function<void(Canvas&)> onCanvas,
                            std::function<void(std::string)> onError) {
    if (!initialized_) {
        lazyInit();
        initialized_ = true;
    }
    CA_LOG_INFO("number of objects : %zu", container->objects()->size());
    ecore_thread_main_loop_begin();
    try {
        const ImageCache images(evas_);
        const auto objects = container->objects();
        Canvas canvas(static_cast<unsigned int*>(engineInfo_->info.dest_buffer), width_, height_);
        const ObjectPointer root(new Object);
        root->width(width_);
        root->height(height_);
        for (const auto& [id, element] : *objects) {
            if (element && !element->mark) {
                drawTopLevel(element, root, container, canvas, onCanvas);
            }
        }
    } catch (const std::exception& error) {
        CA_LOG_ERROR("onError");
        onError(error.what());
    }
    ecore_thread_main_loop_end();
    return true;
}

void ObjectRenderer::drawTopLevel(const ElementPointer& element, const ObjectPointer& root,
                                  const ContainerPointer& container, Canvas& canvas,
                                  const std::function<void(Canvas&)>& onCanvas) {
    assertElement(element, container);
    const ObjectPointer object = onRender(element, root, container);
    std::unique_ptr<Eina_List, void (*)(Eina_List*)> updates(evas_render_updates(evas_), evas_render_updates_free);
    const std::string x = element->attribute("x");
    const std::string y = element->attribute("y");
    const bool placed = !x.empty() && !y.empty();
    if (placed) {
        object->x(std::stoi(x));
        object->y(std::stoi(y));
    }
    updates.reset();
    if (placed) {
        canvas.add(object);
        onCanvas(canvas);
    }
    canvas.clear();
    onErase(object);
    // An element without a place was drawn but never delivered, and will be drawn again by the next call.
    if (placed) {
        element->mark = true;
    }
}

void ObjectRenderer::onErase(ObjectPointer object) {
    for (const auto& child : *object->children()) {
        onErase(child);
    }
    ecore_main_loop_thread_safe_call_sync(
        [](void* evasObject) -> void* {
            evas_object_del(static_cast<Eo*>(evasObject));
            return nullptr;
        },
        object->evas());
}

}  // namespace vaultpad::graphic
