#include "placement-fixture.h"

namespace vaultpad::test {

namespace {

ElementPointer withAttributes(const Attributes& fixed, const Attributes& more) {
    Attributes all = fixed;
    all.insert(all.end(), more.begin(), more.end());
    return makeElement("object", all);
}

}  // namespace

std::shared_ptr<graphic::Object> makeParent(int left, int top, int width, int height) {
    auto parent = std::make_shared<graphic::Object>();
    parent->left(left);
    parent->top(top);
    parent->width(width);
    parent->height(height);
    return parent;
}

PlacementTest::PlacementTest() {
    layout_.imageBaseDirectory("/nowhere")
        .image({{"id", "box"}, {"width", "100"}, {"height", "50"}})
        .string({{"id", "ok"}, {"value", "OK"}})
        .font({{"id", "font"}, {"family", "Noto Sans"}, {"size", "20"}, {"color", "FFFFFF"}});
    renderer_.lazyInit();
    toolkit_.calls.clear();
}

PlacementTest::~PlacementTest() {
    releaseMainLoop();
}

std::shared_ptr<graphic::Object> PlacementTest::place(const ElementPointer& element) {
    return renderer_.onRender(element, parent_, layout_.container());
}

std::shared_ptr<graphic::Object> PlacementTest::placeText(Extent extent, const Attributes& attributes) {
    toolkit_.textExtent = [extent](int) { return extent; };
    return place(withAttributes({{"id", "text"}, {"ref", "ok"}, {"font", "font"}}, attributes));
}

std::shared_ptr<graphic::Object> PlacementTest::placeBox(const Attributes& attributes) {
    return place(withAttributes({{"id", "box"}, {"type", "image"}, {"ref", "box"}}, attributes));
}

std::string PlacementTest::placingError(const Attributes& attributes) {
    try {
        placeBox(attributes);
    } catch (const std::exception& error) {
        return error.what();
    }
    return "no exception";
}

}  // namespace vaultpad::test
