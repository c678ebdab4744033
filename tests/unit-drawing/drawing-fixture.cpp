#include "drawing-fixture.h"

#include <Ecore.h>

#include "runtime-folder.h"
#include "toolkit-session.h"

namespace vaultpad::test {

namespace {

class ToolkitEnvironment : public testing::Environment {
public:
    void SetUp() override { session_ = std::make_unique<ToolkitSession>(); }
    void TearDown() override { session_.reset(); }

private:
    RuntimeFolder runtime_;
    std::unique_ptr<ToolkitSession> session_;
};

// Owned by GoogleTest. Linked into an executable together with the fixture, it serves all its tests.
[[maybe_unused]] const testing::Environment* const toolkit = testing::AddGlobalTestEnvironment(new ToolkitEnvironment);

}  // namespace

int mainLoopDepth() {
    const int depth = ecore_thread_main_loop_begin() - 1;
    ecore_thread_main_loop_end();
    return depth;
}

int releaseMainLoop() {
    const int depth = mainLoopDepth();
    for (int i = 0; i < depth; ++i) {
        ecore_thread_main_loop_end();
    }
    return depth;
}

Rendering render(graphic::ObjectRenderer& renderer, const std::shared_ptr<context::ElementContainer>& container) {
    Rendering rendering;
    const auto onCanvas = [&rendering](graphic::Canvas& canvas) {
        Delivery delivery;
        delivery.objects = canvas.size();
        delivery.buffer = canvas.buffer();
        delivery.mainLoopDepth = mainLoopDepth();
        delivery.object = canvas.object(0);
        delivery.whole = cutOut(canvas.buffer(), canvas.width(), canvas.width(), canvas.height());
        delivery.image = cutOut(canvas.buffer(), canvas.width(), delivery.object->width(), delivery.object->height());
        rendering.deliveries.push_back(std::move(delivery));
    };
    const auto onError = [&rendering](const std::string& text) { rendering.errors.push_back(text); };
    rendering.result = renderer.render(container, onCanvas, onError);
    return rendering;
}

Delivery renderOne(graphic::ObjectRenderer& renderer, const std::shared_ptr<context::ElementContainer>& container) {
    Rendering rendering = render(renderer, container);
    EXPECT_THAT(rendering.errors, testing::IsEmpty());
    EXPECT_EQ(rendering.deliveries.size(), 1u);
    return rendering.deliveries.empty() ? Delivery() : std::move(rendering.deliveries.front());
}

}  // namespace vaultpad::test
