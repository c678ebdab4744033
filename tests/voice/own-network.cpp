// The voice socket's name belongs to the whole network namespace: where the system allows it, each test has one of its
// own, so that tests and pads of the same host do not meet. Elsewhere the tests' resource lock keeps them apart.
#include <gtest/gtest.h>
#include <sched.h>

#include <cstdio>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (unshare(CLONE_NEWNET) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
        std::printf("The voice socket is shared with the rest of this host.\n");
    }
    return RUN_ALL_TESTS();
}
