/*
 * What the renderer asks of the toolkit and of libc, recorded and under a test's control.
 *
 * The linker redirects (--wrap) the calls of the objects in a test executable and of nothing in shared libraries; each
 * call goes on to the real function unless the test says otherwise.
 */
#ifndef VAULTPAD_UNIT_DRAWING_TOOLKIT_RECORDER_H
#define VAULTPAD_UNIT_DRAWING_TOOLKIT_RECORDER_H

#include <Evas.h>
#include <Evas_Engine_Buffer.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vaultpad::test {

struct Extent {
    int width;
    int height;
};

struct FontSetting {
    std::string family;
    int size;
    bool operator==(const FontSetting& other) const { return family == other.family && size == other.size; }
};

struct Colour {
    int red;
    int green;
    int blue;
    int alpha;
    bool operator==(const Colour& other) const {
        return red == other.red && green == other.green && blue == other.blue && alpha == other.alpha;
    }
};

/* Names of things that a test may make fail. */
enum class Failure { None, MethodLookup, Canvas, EngineInfo, Pixels };

class ToolkitRecorder {
public:
    /* Records while it lives; one at a time. */
    ToolkitRecorder();
    ~ToolkitRecorder();
    ToolkitRecorder(const ToolkitRecorder&) = delete;
    ToolkitRecorder& operator=(const ToolkitRecorder&) = delete;

    static ToolkitRecorder* current();

    void call(const std::string& name) { calls.push_back(name); }
    int count(const std::string& name) const;

    Failure failure = Failure::None;
    /* The size in bytes of the pixel buffer: only such allocations fail, and are recorded. */
    std::size_t pixelBytes = 0;
    /* The byte that such an allocation is filled with. */
    std::optional<unsigned char> pixelFilling;
    /* The hook that the engine's information comes with; none in the real one. */
    decltype(Evas_Engine_Info_Buffer::info.func.switch_buffer) switchBuffer = nullptr;
    /* The extent of text objects, given the size last set; the real one when empty. */
    std::function<Extent(int)> textExtent;

    /* The functions called, in order. Measuring and setting of properties is not among them. */
    std::vector<std::string> calls;
    std::vector<FontSetting> fonts;
    std::vector<Colour> colours;
    std::vector<std::string> texts;
    std::vector<std::string> translated; /* "domain: message id" */
    std::vector<Extent> outputSizes;
    std::vector<Eo*> added;
    std::vector<Eo*> deleted;
    std::optional<decltype(Evas_Engine_Info_Buffer::info)> engineInfo; /* as it was set */
    void* pixels = nullptr;
};

}  // namespace vaultpad::test

#endif
