/* What a process holds, and how it grows with the sessions that it has run. */
#ifndef VAULTPAD_TESTS_SOAK_GROWTH_H
#define VAULTPAD_TESTS_SOAK_GROWTH_H

#include <cstddef>
#include <vector>

namespace vaultpad::soak {

/* Of this process, at this moment. What the allocator keeps without need is given back first. */
struct Holdings {
    double allocated = 0;   /* bytes */
    double resident = 0;    /* bytes */
    double descriptors = 0; /* without the images */
    double images = 0;      /* files of the resource tree that EFL's image cache keeps open, each once */
    double memoryFiles = 0; /* descriptors and mappings of unnamed files */
    double threads = 0;
    double windows = 0; /* canvases with a window, and what EFL makes beside it */
};

Holdings holdings();

/*
 * The growth of one quantity over those stretches of a run that are of one kind: the other stretches are left out, so
 * that their growth is not counted here.
 */
class Growth {
public:
    /* A stretch of so many sessions, with the quantity before and after it. */
    void add(std::size_t sessions, double before, double after);

    /* The slope per session by least squares; the first third of the stretches is warm-up. 0 for fewer than two. */
    double perSession() const;

private:
    struct Point {
        double sessions;
        double grown;
    };
    std::vector<Point> points_{{0, 0}};
};

}  // namespace vaultpad::soak

#endif
