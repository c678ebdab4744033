// Small made-up pads: their pictures, and the requests that bring them to the TA.
#ifndef VAULTPAD_TESTS_SECURE_WORLD_SAMPLE_PADS_H
#define VAULTPAD_TESTS_SECURE_WORLD_SAMPLE_PADS_H

#include <cstdint>
#include <string>
#include <vector>

#include "pad/geometry.h"
#include "pad/pad.h"
#include "session/request-bytes.h"
#include "ta-client.h"

namespace vaultpad::secureworld {

// Packs one pixel of 8-bit components as it travels.
Bytes packedPixel(std::uint8_t alpha, std::uint8_t red, std::uint8_t green, std::uint8_t blue);

struct SampleImage {
    std::string id;
    Rect place;    // from the pad's origin
    Bytes pixels;  // packed; made up when empty
};

// Three columns and five rows: 1 to 9, Clear 0 BackSpace, Cancel Tab Return, with background, input and mask. The
// input has room for four dots.
std::vector<SampleImage> pinPad();

// Six by three pixels: a grey background, an input for two dots, the keys 1 and 2; half of 2's focus is transparent.
std::vector<SampleImage> tinyPad();

// What a pad object is made of directly, without the TA.
std::vector<PadImage> padImages(const std::vector<SampleImage>& images);

struct TypeRequest {
    std::uint32_t type = 1;
    std::uint32_t extra = 0;
    std::uint32_t enlarge = 0;
    std::uint32_t highContrast = 0;
    std::uint32_t reverse = 0;
    std::uint32_t orientation = 0;
    std::uint32_t baseX = 100;
    std::uint32_t baseY = 200;
};

Bytes typeRequest(const TypeRequest& type = {});
Bytes renderContextRequest();
Bytes imagesRequest(const std::vector<SampleImage>& images);

// A request as it arrives in a session: on the heap in its exact size, so that a sanitizer sees a read beyond it.
RequestBytes requestOf(const Bytes& bytes);

// Everything up to and with the end of the images; every event is expected to be accepted.
void preparePad(TaClient* client, const std::vector<SampleImage>& images = pinPad(), const TypeRequest& type = {});

// The same and the show.
void showPad(TaClient* client, const std::vector<SampleImage>& images = pinPad(), const TypeRequest& type = {});

// Presses keys by letter: u d l r for the arrows, ! for Return. Expects each to be accepted; returns the last answer.
KeyAnswer press(TaClient* client, const std::string& keys);

// The keys that type 2580 on pinPad() from its opening focus, and those that go from there to Return and press it.
constexpr const char* kType2580 = "r!d!d!d!";
constexpr const char* kFinish = "dr!";

}  // namespace vaultpad::secureworld

#endif
