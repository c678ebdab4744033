/*
 * The sensor framework, as far as the auto-rotation sensor needs it.
 *
 * Every function returns 0 on success. A null or stale handle is a failure, never a crash.
 */
#ifndef VAULTPAD_PLATFORM_SENSOR_H
#define VAULTPAD_PLATFORM_SENSOR_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The auto-rotation sensor, and the values of its first reading that mean portrait. */
enum { VAULTPAD_SENSOR_AUTO_ROTATION = 0x901 };
enum { VAULTPAD_SENSOR_PORTRAIT = 2, VAULTPAD_SENSOR_PORTRAIT_REVERSED = 4 };

typedef void* sensor_h;
typedef void* sensor_listener_h;

typedef struct {
    int accuracy;
    unsigned long long timestamp; /* microseconds */
    int value_count;              /* how many of the values are meaningful */
    float values[16];
} sensor_event_s;

/* Stores in *supported whether a sensor of the type exists. */
int sensor_is_supported(int type, bool* supported);

/* Stores the default sensor of the type; the handle belongs to the framework. */
int sensor_get_default_sensor(int type, sensor_h* sensor);

/* Makes a listener, which the caller destroys with sensor_destroy_listener(). */
int sensor_create_listener(sensor_h sensor, sensor_listener_h* listener);

/* Starts the delivery of readings. */
int sensor_listener_start(sensor_listener_h listener);

/* Stops the delivery of readings. */
int sensor_listener_stop(sensor_listener_h listener);

/* Copies the latest reading of a started listener into *event. */
int sensor_listener_read_data(sensor_listener_h listener, sensor_event_s* event);

/* Releases a listener. */
int sensor_destroy_listener(sensor_listener_h listener);

#ifdef __cplusplus
}
#endif

#endif
