/* EFL, brought up for a client that may never have heard of it. */
#ifndef VAULTPAD_SOURCE_TOOLKIT_SESSION_H
#define VAULTPAD_SOURCE_TOOLKIT_SESSION_H

namespace vaultpad {

/*
 * Holds EFL initialised while it lives. In a client that uses EFL this only counts; in any other it initialises Evas
 * and Ecore without their system modules (and so without D-Bus), for the calling thread. The client's signal handlers
 * are the same afterwards, both times, and so is the locale.
 */
class ToolkitSession {
public:
    ToolkitSession();
    ~ToolkitSession();

    /*
     * Prepares for windows: the connection to the Wayland compositor, if WAYLAND_DISPLAY names one, and Elementary,
     * without its desktop-cache daemon. A client that has Elementary up keeps it as it is. Where the client has not,
     * it stays up to the end of the process: the grab window is never deleted, and EFL 1.26 does not come up cleanly a
     * second time.
     */
    void bringUpWindows();

    ToolkitSession(const ToolkitSession&) = delete;
    ToolkitSession& operator=(const ToolkitSession&) = delete;
};

}  // namespace vaultpad

#endif
