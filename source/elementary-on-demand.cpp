// Elementary, loaded by the first session that grabs keys. Linked, it and the libraries that nothing else needs would
// lengthen the start of every program that uses this library by half, though most never open a window through it. What
// is defined here stands in for the toolkit's functions within the shared library, and is not exported.
#include <Efreet.h>
#include <Elementary.h>
#include <dlfcn.h>

#include "log.h"

namespace {

// As if it had been linked: whatever asks for its symbols by name finds them. Null where it is not installed.
void* load() {
    void* const library = dlopen("libelementary.so.1", RTLD_NOW | RTLD_GLOBAL);
    if (library == nullptr) {
        CA_LOG_ERROR("no window can be made: %s", dlerror());
    }
    return library;
}

void* elementary() {
    static void* const library = load();
    return library;
}

// Elementary's, or one of a library that comes with it.
template <typename Function>
Function* find(const char* name) {
    return elementary() != nullptr ? reinterpret_cast<Function*>(dlsym(elementary(), name)) : nullptr;
}

}  // namespace

void efreet_cache_disable() {
    if (const auto function = find<decltype(efreet_cache_disable)>("efreet_cache_disable")) {
        function();
    }
}

int elm_init(int argc, char** argv) {
    const auto function = find<decltype(elm_init)>("elm_init");
    return function != nullptr ? function(argc, argv) : 0;
}

int elm_shutdown() {
    const auto function = find<decltype(elm_shutdown)>("elm_shutdown");
    return function != nullptr ? function() : 0;
}

Evas_Object* elm_win_add(Evas_Object* parent, const char* name, Elm_Win_Type type) {
    const auto function = find<decltype(elm_win_add)>("elm_win_add");
    return function != nullptr ? function(parent, name, type) : nullptr;
}

Evas_Object* elm_bg_add(Evas_Object* parent) {
    const auto function = find<decltype(elm_bg_add)>("elm_bg_add");
    return function != nullptr ? function(parent) : nullptr;
}

void elm_win_alpha_set(Evas_Object* window, Eina_Bool alpha) {
    if (const auto function = find<decltype(elm_win_alpha_set)>("elm_win_alpha_set")) {
        function(window, alpha);
    }
}

void elm_win_resize_object_add(Evas_Object* window, Evas_Object* child) {
    if (const auto function = find<decltype(elm_win_resize_object_add)>("elm_win_resize_object_add")) {
        function(window, child);
    }
}
