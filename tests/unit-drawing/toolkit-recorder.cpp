#include "toolkit-recorder.h"

#include <Ecore.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace vaultpad::test {

namespace {

ToolkitRecorder* recorder = nullptr;

bool fails(Failure failure) {
    return recorder != nullptr && recorder->failure == failure;
}

void record(const char* name) {
    if (recorder != nullptr) {
        recorder->call(name);
    }
}

Eo* recordAdded(const char* name, Eo* object) {
    record(name);
    if (recorder != nullptr) {
        recorder->added.push_back(object);
    }
    return object;
}

}  // namespace

ToolkitRecorder::ToolkitRecorder() {
    if (recorder != nullptr) {
        throw std::logic_error("there is a toolkit recorder already");
    }
    recorder = this;
}

ToolkitRecorder::~ToolkitRecorder() {
    recorder = nullptr;
}

ToolkitRecorder* ToolkitRecorder::current() {
    return recorder;
}

int ToolkitRecorder::count(const std::string& name) const {
    return static_cast<int>(std::count(calls.begin(), calls.end(), name));
}

}  // namespace vaultpad::test

using vaultpad::test::fails;
using vaultpad::test::Failure;
using vaultpad::test::record;
using vaultpad::test::recordAdded;
using vaultpad::test::recorder;

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
// Visible, because the linker finds calls of the same functions in the toolkit's own libraries.
#pragma GCC visibility push(default)
extern "C" {

int __real_evas_init(void);
int __wrap_evas_init(void) {
    record("evas_init");
    return __real_evas_init();
}

int __real_evas_shutdown(void);
int __wrap_evas_shutdown(void) {
    record("evas_shutdown");
    return __real_evas_shutdown();
}

int __real_evas_render_method_lookup(const char* name);
int __wrap_evas_render_method_lookup(const char* name) {
    record((std::string("evas_render_method_lookup ") + name).c_str());
    return fails(Failure::MethodLookup) ? 0 : __real_evas_render_method_lookup(name);
}

Evas* __real_evas_new(void);
Evas* __wrap_evas_new(void) {
    record("evas_new");
    return fails(Failure::Canvas) ? nullptr : __real_evas_new();
}

void __real_evas_free(Evas* canvas);
void __wrap_evas_free(Evas* canvas) {
    record("evas_free");
    __real_evas_free(canvas);
}

void __real_evas_output_size_set(Evas* canvas, int width, int height);
void __wrap_evas_output_size_set(Evas* canvas, int width, int height) {
    if (recorder != nullptr) {
        recorder->outputSizes.push_back({width, height});
    }
    __real_evas_output_size_set(canvas, width, height);
}

Evas_Engine_Info* __real_evas_engine_info_get(const Evas* canvas);
Evas_Engine_Info* __wrap_evas_engine_info_get(const Evas* canvas) {
    record("evas_engine_info_get");
    if (fails(Failure::EngineInfo)) {
        return nullptr;
    }
    Evas_Engine_Info* info = __real_evas_engine_info_get(canvas);
    if (recorder != nullptr && recorder->switchBuffer != nullptr) {
        reinterpret_cast<Evas_Engine_Info_Buffer*>(info)->info.func.switch_buffer = recorder->switchBuffer;
    }
    return info;
}

Eina_Bool __real_evas_engine_info_set(Evas* canvas, Evas_Engine_Info* info);
Eina_Bool __wrap_evas_engine_info_set(Evas* canvas, Evas_Engine_Info* info) {
    record("evas_engine_info_set");
    if (recorder != nullptr) {
        recorder->engineInfo = reinterpret_cast<Evas_Engine_Info_Buffer*>(info)->info;
    }
    return __real_evas_engine_info_set(canvas, info);
}

void* __real_malloc(std::size_t size);
void* __wrap_malloc(std::size_t size) {
    const bool pixels = recorder != nullptr && recorder->pixelBytes == size && size != 0;
    if (!pixels) {
        return __real_malloc(size);
    }
    record("malloc of the pixels");
    if (fails(Failure::Pixels)) {
        return nullptr;
    }
    recorder->pixels = __real_malloc(size);
    if (recorder->pixelFilling) {
        std::memset(recorder->pixels, *recorder->pixelFilling, size);
    }
    return recorder->pixels;
}

void __real_free(void* memory);
void __wrap_free(void* memory) {
    if (recorder != nullptr && memory != nullptr && memory == recorder->pixels) {
        record("free of the pixels");
        recorder->pixels = nullptr;
    }
    __real_free(memory);
}

int __real_ecore_thread_main_loop_begin(void);
int __wrap_ecore_thread_main_loop_begin(void) {
    record("lock");
    return __real_ecore_thread_main_loop_begin();
}

int __real_ecore_thread_main_loop_end(void);
int __wrap_ecore_thread_main_loop_end(void) {
    record("unlock");
    return __real_ecore_thread_main_loop_end();
}

void* __real_ecore_main_loop_thread_safe_call_sync(Ecore_Data_Cb callback, void* data);
void* __wrap_ecore_main_loop_thread_safe_call_sync(Ecore_Data_Cb callback, void* data) {
    record("call on the main loop");
    return __real_ecore_main_loop_thread_safe_call_sync(callback, data);
}

Eina_List* __real_evas_render_updates(Evas* canvas);
Eina_List* __wrap_evas_render_updates(Evas* canvas) {
    record("evas_render_updates");
    return __real_evas_render_updates(canvas);
}

void __real_evas_render_updates_free(Eina_List* updates);
void __wrap_evas_render_updates_free(Eina_List* updates) {
    record("evas_render_updates_free");
    __real_evas_render_updates_free(updates);
}

Eo* __real_evas_object_rectangle_add(Evas* canvas);
Eo* __wrap_evas_object_rectangle_add(Evas* canvas) {
    return recordAdded("add rectangle", __real_evas_object_rectangle_add(canvas));
}

Eo* __real_evas_object_text_add(Evas* canvas);
Eo* __wrap_evas_object_text_add(Evas* canvas) {
    return recordAdded("add text", __real_evas_object_text_add(canvas));
}

Eo* __real_evas_object_image_add(Evas* canvas);
Eo* __wrap_evas_object_image_add(Evas* canvas) {
    return recordAdded("add image", __real_evas_object_image_add(canvas));
}

void __real_evas_object_del(Eo* object);
void __wrap_evas_object_del(Eo* object) {
    record("evas_object_del");
    if (recorder != nullptr) {
        recorder->deleted.push_back(object);
    }
    __real_evas_object_del(object);
}

void __real_evas_object_color_set(Eo* object, int red, int green, int blue, int alpha);
void __wrap_evas_object_color_set(Eo* object, int red, int green, int blue, int alpha) {
    if (recorder != nullptr) {
        recorder->colours.push_back({red, green, blue, alpha});
    }
    __real_evas_object_color_set(object, red, green, blue, alpha);
}

void __real_evas_object_text_text_set(Eo* object, const char* text);
void __wrap_evas_object_text_text_set(Eo* object, const char* text) {
    if (recorder != nullptr) {
        recorder->texts.emplace_back(text);
    }
    __real_evas_object_text_text_set(object, text);
}

void __real_evas_object_text_font_set(Eo* object, const char* family, Evas_Font_Size size);
void __wrap_evas_object_text_font_set(Eo* object, const char* family, Evas_Font_Size size) {
    if (recorder != nullptr) {
        recorder->fonts.push_back({family, size});
    }
    __real_evas_object_text_font_set(object, family, size);
}

void __real_evas_object_geometry_get(const Eo* object, int* x, int* y, int* width, int* height);
void __wrap_evas_object_geometry_get(const Eo* object, int* x, int* y, int* width, int* height) {
    __real_evas_object_geometry_get(object, x, y, width, height);
    const bool isText = std::strcmp(evas_object_type_get(object), "text") == 0;
    if (recorder == nullptr || !recorder->textExtent || !isText || recorder->fonts.empty()) {
        return;
    }
    const vaultpad::test::Extent extent = recorder->textExtent(recorder->fonts.back().size);
    if (width != nullptr) {
        *width = extent.width;
    }
    if (height != nullptr) {
        *height = extent.height;
    }
}

// The optimised form of dgettext() in <libintl.h> is a call of dcgettext().
static char* translate(const char* domain, const char* message) {
    static char translation[] = "translated";
    if (recorder != nullptr) {
        recorder->translated.push_back(std::string(domain) + ": " + message);
    }
    return translation;
}

char* __wrap_dgettext(const char* domain, const char* message) {
    return translate(domain, message);
}

char* __wrap_dcgettext(const char* domain, const char* message, int) {
    return translate(domain, message);
}

}  // extern "C"
#pragma GCC visibility pop
// NOLINTEND(bugprone-reserved-identifier)
