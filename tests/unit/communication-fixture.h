/* A TeeClient with an open session, and canvases to load into it. */
#ifndef VAULTPAD_TESTS_UNIT_COMMUNICATION_FIXTURE_H
#define VAULTPAD_TESTS_UNIT_COMMUNICATION_FIXTURE_H

#include <vaultpad/ta-protocol.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "communication/tee-client.h"
#include "platform-test.h"

namespace vaultpad::test {

/* A canvas that owns its pixels, with one object. */
class OneObjectCanvas {
public:
    OneObjectCanvas(int width, int height, std::vector<unsigned int> words)
        : words_(std::move(words)),
          canvas_(words_.data(), width, height),
          object_(std::make_shared<graphic::Object>()) {
        words_.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        canvas_.buffer(words_.data());
        object_->id("key");
        object_->width(width);
        object_->height(height);
        place(0, 0);
        canvas_.add(object_);
    }
    OneObjectCanvas(int width, int height) : OneObjectCanvas(width, height, {}) {}

    OneObjectCanvas& place(int x, int y) {
        object_->x(x);
        object_->y(y);
        return *this;
    }
    graphic::Object& object() { return *object_; }
    operator graphic::Canvas&() { return canvas_; }

private:
    std::vector<unsigned int> words_;
    graphic::Canvas canvas_;
    std::shared_ptr<graphic::Object> object_;
};

class TeeClientTest : public PlatformTest {
protected:
    TeeClientTest() : client(std::make_unique<communication::TeeClient>()) {
        client->orientation_ = 0;
        EXPECT_EQ(client->init(), 0);
        platform().clearJournal();
    }

    /* How many of the created blocks were not given back. */
    static int unreleasedBlocks() {
        int count = 0;
        for (const auto& block : platform().blocks) {
            count += block->released ? 0 : 1;
        }
        return count;
    }

    /* Sends what is loaded; returns the values of the last image of the batch: name, 5 words, pixels. */
    Values sentImage() {
        EXPECT_EQ(client->send_image_data(), 0);
        const Values written = platform().blockOf(VAULTPAD_TA_EVENT_IMAGE_DATA).written;
        if (written.size() < 8) {
            ADD_FAILURE() << "no image in the batch";
            return Values(7);
        }
        return {written.end() - 7, written.end()};
    }

    std::unique_ptr<communication::TeeClient> client;
};

/* Values from words. */
inline Values words(const std::vector<std::int32_t>& numbers) {
    Values values;
    for (const std::int32_t number : numbers) {
        values.emplace_back(static_cast<std::uint32_t>(number));
    }
    return values;
}

}  // namespace vaultpad::test

#endif
