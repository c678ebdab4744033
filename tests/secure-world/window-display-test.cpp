// The display window, on SDL's dummy desktop.
#include <SDL.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "display/display-loader.h"
#include "display/screen.h"
#include "log.h"
#include "rsa-client.h"
#include "sample-pads.h"
#include "session/session.h"
#include "ta-client.h"
#include "vaultpad/ta-protocol.h"
#include "voice/voice-output.h"

namespace vaultpad::secureworld {
namespace {

constexpr const char* kDummyDesktop = "SDL_VIDEODRIVER=dummy";

SDL_Window* firstWindow() {
    for (Uint32 id = 1; id < 100; ++id) {
        if (SDL_Window* window = SDL_GetWindowFromID(id)) {
            return window;
        }
    }
    return nullptr;
}

void closeWindow(SDL_Window* window) {
    SDL_Event event = {};
    event.type = SDL_WINDOWEVENT;
    event.window.windowID = SDL_GetWindowID(window);
    event.window.event = SDL_WINDOWEVENT_CLOSE;
    SDL_PushEvent(&event);
}

class WindowDisplayTest : public testing::Test {
protected:
    void SetUp() override {
        setenv("SDL_VIDEODRIVER", "dummy", 1);
        display_ = loadDisplay("window", {});
    }

    void show(const std::vector<std::uint32_t>& pixels, int width) {
        display_->show(
            {pixels.data(), width, static_cast<int>(pixels.size()) / width, static_cast<std::size_t>(width)});
    }

    std::unique_ptr<Display> display_;
};

TEST_F(WindowDisplayTest, ShowsThePictureInItsOwnSizeInAWindowOfItsTitle) {
    const std::vector<std::uint32_t> pixels(std::size_t{300} * 200, 0xff3366ccu);
    show(pixels, 300);
    SDL_Window* window = firstWindow();
    ASSERT_NE(nullptr, window);
    EXPECT_STREQ("Vault Pad (emulated secure display)", SDL_GetWindowTitle(window));
    const SDL_Surface* surface = SDL_GetWindowSurface(window);
    ASSERT_NE(nullptr, surface);
    EXPECT_EQ(300, surface->w);
    EXPECT_EQ(200, surface->h);
    const auto* row = reinterpret_cast<const Uint32*>(static_cast<const char*>(surface->pixels) + 50 * surface->pitch);
    EXPECT_EQ(SDL_MapRGB(surface->format, 0x33, 0x66, 0xcc), row[100] & 0xffffffu);
}

TEST_F(WindowDisplayTest, FitsAPictureThatIsLargerThanTheDesktop) {
    const std::vector<std::uint32_t> pixels(std::size_t{4000} * 500, 0xff3366ccu);
    show(pixels, 4000);
    SDL_Window* window = firstWindow();
    ASSERT_NE(nullptr, window);
    const SDL_Surface* surface = SDL_GetWindowSurface(window);
    EXPECT_LT(surface->w, 4000);
    EXPECT_NEAR(8.0, static_cast<double>(surface->w) / surface->h, 0.2);
}

TEST_F(WindowDisplayTest, TellsThatTheViewerClosedItUntilTheNextPicture) {
    const std::vector<std::uint32_t> pixels(100, 0xff000000u);
    show(pixels, 10);
    EXPECT_GT(display_->idleInterval(), 0);
    closeWindow(firstWindow());
    display_->idle();
    EXPECT_TRUE(display_->closedByViewer());
    EXPECT_EQ(nullptr, firstWindow());
    EXPECT_EQ(-1, display_->idleInterval());
    show(pixels, 10);
    EXPECT_FALSE(display_->closedByViewer());
}

TEST_F(WindowDisplayTest, HidesWithoutCountingAsClosed) {
    const std::vector<std::uint32_t> pixels(100, 0xff000000u);
    show(pixels, 10);
    display_->hide();
    EXPECT_EQ(nullptr, firstWindow());
    EXPECT_FALSE(display_->closedByViewer());
}

TEST_F(WindowDisplayTest, MakesTheNextKeyACancelOnceTheViewerHasClosedIt) {
    Screen screen(std::move(display_), Screen::View::Pad);
    Log log("none");
    const std::unique_ptr<VoiceOutput> voice = makeVoiceOutput({}, &log);
    Session session(&screen, voice.get(), &log, "");
    session.handle(VAULTPAD_TA_EVENT_IME_TYPE, requestOf(typeRequest()));
    session.handle(VAULTPAD_TA_EVENT_RENDER_CONTEXT, requestOf(renderContextRequest()));
    session.handle(VAULTPAD_TA_EVENT_IMAGE_DATA, requestOf(imagesRequest(pinPad())));
    session.handle(VAULTPAD_TA_EVENT_IMAGE_DONE, requestOf({}));
    session.handle(VAULTPAD_TA_EVENT_SHOW, requestOf({}));
    const RequestBytes returnKey = requestOf(Writer().word(2).word(VAULTPAD_TA_KEY_RETURN).bytes());
    EXPECT_FALSE(session.handle(VAULTPAD_TA_EVENT_KEY, returnKey).closed);
    closeWindow(firstWindow());
    screen.idle();
    const Answer answer = session.handle(VAULTPAD_TA_EVENT_KEY, returnKey);
    EXPECT_TRUE(answer.closed);
    EXPECT_TRUE(answer.encryptedData.empty());
    EXPECT_ANY_THROW(session.handle(VAULTPAD_TA_EVENT_KEY, returnKey));
}

TEST(WindowDisplay, ServesAWholeSessionInTheTrustedApplication) {
    const RsaClient rsa(1024);
    TaClient::Setup setup;
    setup.options = {"--display", "window", "--view", "screen"};
    setup.environment = {kDummyDesktop};
    TaClient client(setup);
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa.publicKeyRequest()));
    press(&client, kType2580);
    EXPECT_EQ(plaintextOf("2580"), rsa.decrypt(press(&client, kFinish)));
}

TEST(WindowDisplay, RefusesTheSessionWithoutADesktop) {
    TaClient::Setup setup;
    setup.options = {"--display", "window"};
    setup.environment = {"SDL_VIDEODRIVER=x11", "DISPLAY=:9999"};
    TaClient client(setup);
    EXPECT_EQ(-1, client.open());
    EXPECT_EQ(1, client.waitForEnd());
    EXPECT_NE(std::string::npos, client.log().find("no desktop to open a window on")) << client.log();
}

}  // namespace
}  // namespace vaultpad::secureworld
