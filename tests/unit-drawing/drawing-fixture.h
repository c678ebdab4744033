/* Renders layouts and keeps what was delivered. */
#ifndef VAULTPAD_UNIT_DRAWING_DRAWING_FIXTURE_H
#define VAULTPAD_UNIT_DRAWING_DRAWING_FIXTURE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "graphic/object-renderer.h"
#include "layout-builder.h"
#include "picture-comparison.h"
#include "platform-double.h"
#include "temporary-folder.h"

namespace vaultpad::test {

/* How often the calling thread holds the main-loop lock. */
int mainLoopDepth();

/* Lets the main-loop lock go altogether and returns how often it was held. */
int releaseMainLoop();

/* One call of onCanvas. */
struct Delivery {
    int objects = 0;
    unsigned int* buffer = nullptr;
    int mainLoopDepth = 0;
    std::shared_ptr<graphic::Object> object;
    Picture whole; /* the whole canvas */
    Picture image; /* what the object's size cuts out of its top-left corner */
};

struct Rendering {
    bool result = false;
    std::vector<Delivery> deliveries;
    std::vector<std::string> errors;
};

Rendering render(graphic::ObjectRenderer& renderer, const std::shared_ptr<context::ElementContainer>& container);

/* Renders and returns the only delivery; fails the test when there is another number of them or an error. */
Delivery renderOne(graphic::ObjectRenderer& renderer, const std::shared_ptr<context::ElementContainer>& container);

class DrawingTest : public testing::Test {
protected:
    DrawingTest() { platform().reset(); }
    ~DrawingTest() override { EXPECT_EQ(mainLoopDepth(), 0) << "the test left the main-loop lock held"; }

    /* Writes a PNG file into the test's image folder. */
    void writeImage(const std::string& name, const Picture& picture) { writePng(picture, folder_.path() + "/" + name); }

    TemporaryFolder folder_;
};

}  // namespace vaultpad::test

#endif
