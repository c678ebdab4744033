/*
 * Another application: a window, and a line for every key that arrives: "down NAME" or "up NAME". Says "ready" when the
 * window has the keyboard.
 */
#include <Ecore_Input.h>
#include <Efreet.h>
#include <Elementary.h>
#include <stdio.h>

static void say(const char* what, const char* name) {
    printf("%s%s%s\n", what, name != NULL ? " " : "", name != NULL ? name : "");
    fflush(stdout);
}

static Eina_Bool on_down(void* data, int type, void* event) {
    const Ecore_Event_Key* key = event;
    (void)data;
    (void)type;
    say("down", key->keyname);
    return ECORE_CALLBACK_PASS_ON;
}

static Eina_Bool on_up(void* data, int type, void* event) {
    const Ecore_Event_Key* key = event;
    (void)data;
    (void)type;
    say("up", key->keyname);
    return ECORE_CALLBACK_PASS_ON;
}

static void on_focus(void* data, Evas_Object* window, void* event) {
    (void)data;
    (void)window;
    (void)event;
    say("ready", NULL);
}

int main(int argc, char** argv) {
    ecore_app_no_system_modules();
    efreet_cache_disable();
    elm_init(argc, argv);
    Evas_Object* window = elm_win_util_standard_add("other", "Other application");
    evas_object_smart_callback_add(window, "focused", on_focus, NULL);
    evas_object_resize(window, 320, 200);
    evas_object_show(window);
    ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, on_down, NULL);
    ecore_event_handler_add(ECORE_EVENT_KEY_UP, on_up, NULL);
    elm_run();
    return 0;
}
