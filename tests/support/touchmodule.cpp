// SPDX-License-Identifier: MIT
// A module for Weston that adds a touch screen, which does what it reads from the pipe named by the
// environment variable TROLLEO_TOUCH. Each line is a letter, a finger and, except for the end of a
// touch, a position in pixels: "d 0 10 20" puts a finger down, "m 0 11 21" moves it, "u 0" lifts
// it, and "c" cancels all touches, as the compositor does when it takes a gesture for its own.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>

extern "C" {
#include <libweston/libweston.h>

// Weston exports these functions, but does not install the header that declares them.
struct weston_touch_device;
struct weston_touch_device_ops;
void weston_seat_init(weston_seat *seat, weston_compositor *compositor, const char *name);
int weston_seat_init_touch(weston_seat *seat);
weston_touch_device *weston_touch_create_touch_device(weston_touch *touch, const char *path,
                                                      void *data,
                                                      const weston_touch_device_ops *operations);
#if WESTON_MAJOR < 12
void notify_touch_normalized(weston_touch_device *device, const timespec *time, int finger,
                             double x, double y, const void *normalized, int type);
#else
void notify_touch_normalized(weston_touch_device *device, const timespec *time, int finger,
                             const weston_coord_global *position, const void *normalized, int type);
#endif
void notify_touch_frame(weston_touch_device *device);
void notify_touch_cancel(weston_touch_device *device);
}

namespace {

weston_seat seat;
weston_touch_device *device = nullptr;
std::FILE *pipeToRead = nullptr;

void notify(int type, int finger, double x, double y)
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
#if WESTON_MAJOR < 12
    notify_touch_normalized(device, &now, finger, x, y, nullptr, type);
#else
    weston_coord_global position{};
    position.c.x = x;
    position.c.y = y;
    notify_touch_normalized(device, &now, finger, type == WL_TOUCH_UP ? nullptr : &position,
                            nullptr, type);
#endif
    notify_touch_frame(device);
}

int obey(int /*descriptor*/, std::uint32_t /*mask*/, void * /*data*/)
{
    char line[100];
    while (std::fgets(line, sizeof line, pipeToRead)) {
        char what = 0;
        int finger = 0;
        double x = 0;
        double y = 0;
        if (std::sscanf(line, "%c %d %lf %lf", &what, &finger, &x, &y) < 1)
            continue;
        if (what == 'd')
            notify(WL_TOUCH_DOWN, finger, x, y);
        else if (what == 'm')
            notify(WL_TOUCH_MOTION, finger, x, y);
        else if (what == 'u')
            notify(WL_TOUCH_UP, finger, 0, 0);
        else if (what == 'c')
            notify_touch_cancel(device);
    }
    std::clearerr(pipeToRead);
    return 0;
}

} // namespace

extern "C" int wet_module_init(weston_compositor *compositor, int * /*argc*/, char ** /*argv*/)
{
    const char *path = std::getenv("TROLLEO_TOUCH");
    if (!path || mkfifo(path, S_IRUSR | S_IWUSR) != 0)
        return -1;
    // Open for writing as well, so that the pipe never ends.
    const int descriptor = open(path, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return -1;
    pipeToRead = fdopen(descriptor, "r");
    weston_seat_init(&seat, compositor, "touch");
    weston_seat_init_touch(&seat);
    device = weston_touch_create_touch_device(weston_seat_get_touch(&seat), path, nullptr, nullptr);
    wl_event_loop_add_fd(wl_display_get_event_loop(compositor->wl_display), descriptor,
                         WL_EVENT_READABLE, obey, nullptr);
    return 0;
}
