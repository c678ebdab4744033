/* One element drawn inside a parent of any size and place. */
#ifndef VAULTPAD_UNIT_DRAWING_PLACEMENT_FIXTURE_H
#define VAULTPAD_UNIT_DRAWING_PLACEMENT_FIXTURE_H

#include <memory>

#include "drawing-fixture.h"
#include "toolkit-recorder.h"

namespace vaultpad::test {

/* A parent without a toolkit object. */
std::shared_ptr<graphic::Object> makeParent(int left, int top, int width, int height);

class PlacementTest : public DrawingTest {
protected:
    PlacementTest();
    ~PlacementTest() override;

    /* Draws a text of the given extent, which does not depend on its font's size. */
    std::shared_ptr<graphic::Object> placeText(Extent extent, const Attributes& attributes);

    /* Draws a transparent rectangle. */
    std::shared_ptr<graphic::Object> placeBox(const Attributes& attributes);

    /* The text of what drawing the box throws. */
    std::string placingError(const Attributes& attributes);

    std::shared_ptr<graphic::Object> place(const ElementPointer& element);

    LayoutBuilder layout_;
    ToolkitRecorder toolkit_;
    graphic::ObjectRenderer renderer_{64, 48};
    std::shared_ptr<graphic::Object> parent_ = makeParent(0, 0, 1920, 1080);
};

}  // namespace vaultpad::test

#endif
