/* The one session with the trusted application (TA), and every event sent over it. */
#ifndef VAULTPAD_SOURCE_COMMUNICATION_TEE_CLIENT_H
#define VAULTPAD_SOURCE_COMMUNICATION_TEE_CLIENT_H

#include <vaultpad/ta-protocol.h>
#include <vaultpad/vaultpad.h>

#include <cstdint>
#include <optional>
#include <string>

#include "communication/image-record.h"
#include "graphic/canvas.h"

namespace vaultpad::audio {
struct voice_data;
}

namespace vaultpad::communication {

/*
 * Operations return 0 on success and -1 on failure, which is logged. None retries, none throws, and none checks that
 * the session is open: the platform refuses a closed one. After a failure the block in use stays allocated until the
 * session is closed, but for show(), send_image_done() and init_render_context(). One thread only.
 */
class TeeClient {
public:
    TeeClient();
    ~TeeClient();
    TeeClient(const TeeClient&) = delete;
    TeeClient& operator=(const TeeClient&) = delete;

    /* Opens the session; 0 at once when it is open. */
    std::int32_t init();

    /* Closes the session; 0 always. Images and the images-sent flag stay. */
    std::int32_t exit();

    /*
     * Event 5. type: 1 PIN pad, 2 keyboard; extra: digits that complete the PIN pad; enlarge: focus zoom, 0 or 1;
     * highcontrast, oMode: passed on. Sends orientation_ and the pad's screen origin too, and keeps the extent that
     * rotated images are mirrored in.
     */
    std::int32_t send_ime_type(int type, int extra, int enlarge, int highcontrast, int oMode);

    /* Event 3. keyBlob holds keyPart1Length + keyPart2Length bytes, auxBlob auxLength bytes. */
    std::int32_t send_public_key(unsigned int keyWord1, unsigned int keyWord2, void* keyBlob,
                                 unsigned int keyPart1Length, unsigned int keyPart2Length, void* auxBlob,
                                 unsigned int auxLength);

    /* The upload before show(): trusted-UI description, images (once per session), end of images, voice clips. */
    std::int32_t send_data_to_ta();

    /* Event 1. */
    std::int32_t show();

    /* Event 6. */
    std::int32_t send_refresh_loading_bar();

    /*
     * Event 2. The flags are written, if neither is null, as soon as the TA's first two words were read. An answer
     * whose lengths exceed the record is refused; then the record's two lengths and ta_value are 0.
     */
    std::int32_t send_key_event(int event_type, int key_code, AppResult* result, bool* button_pressed, bool* closed);

    /* Event 8. */
    std::int32_t init_render_context();

    /* Event 0: one batch. Returns 1 when nothing is left to send. */
    std::int32_t send_image_data();

    /* Event 7. */
    std::int32_t send_image_done();

    /* Event 4, as often as it takes; empties the voice guide's clips. 0 at once while the guide is off. */
    std::int32_t send_voice_data();

    /*
     * Takes the canvas's first object into the image table, packed and turned for orientation_. 0 also when the table
     * is full (the image is dropped); -1 when memory runs out, the object is larger than the canvas, or its
     * turned place is none that a word holds.
     */
    std::int32_t loadImage(graphic::Canvas& canvas);

    /* 0 landscape, 1 portrait, 3 portrait reversed. The owner sets it before send_ime_type() and loadImage(). */
    std::int32_t orientation_;

private:
    void* createBlock(std::uint32_t size);
    bool writeUint(void* block, std::uint32_t value);
    bool writeSetting(void* block, const char* name, std::int32_t value);
    bool writeString(void* block, const char* text);
    bool writeBlob(void* block, const void* data, std::uint32_t size);
    bool invoke(std::uint32_t event);
    bool readUint(void* block, std::uint32_t* value);
    bool readBlob(void* block, std::uint32_t size, void** data);
    bool readAnswer(void* block, AppResult* result, bool* button_pressed, bool* closed);
    std::int32_t sendEmptyEvent(std::uint32_t event, std::uint32_t blockSize, bool releaseAfterFailure);
    void uploadTuiDescription(void** block);
    struct Place {
        std::int32_t x;
        std::int32_t y;
    };
    std::optional<Place> rotatedPlace(const graphic::Object& object, bool clockwise) const;
    bool isRotated() const;
    std::int32_t loadPlainImage(const graphic::Canvas& canvas, const graphic::Object& object);
    std::int32_t loadRotatedImage(const graphic::Canvas& canvas, const graphic::Object& object);
    void record(const graphic::Object& object, std::uint8_t* pixels, std::int32_t x, std::int32_t y, std::int32_t width,
                std::int32_t height);
    std::uint32_t chooseBatch() const;
    bool writeImage(void* block, ImageRecord& image);
    bool writeClip(void* block, const audio::voice_data& clip);

    std::int32_t rotationHeight_ = 0;
    std::int32_t rotationWidth_ = 0;
    ImageRecord images_[VAULTPAD_TA_IMAGE_COUNT_MAX];
    std::int32_t imageCount_ = 0;
    bool sessionOpen_ = false;
    bool imagesSent_ = false;
    void* context_ = nullptr;
    void* tuiContext_ = nullptr;
};

}  // namespace vaultpad::communication

#endif
