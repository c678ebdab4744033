// Uploads to the trusted application: the images of each layout and the clips of the voice guide.
#include <sys/mman.h>
#include <zlib.h>

#include <numeric>
#include <string>

#include "audio/voice-guide.h"
#include "child.h"
#include "communication/tee-client.h"
#include "context/application-context-parser.h"
#include "graphic/object-renderer.h"
#include "television.h"
#include "toolkit-session.h"

namespace {

using namespace vaultpad;
using bench::Look;
using Bytes = std::vector<unsigned char>;

constexpr double kMegabyte = 1e6;
constexpr int kPinpad = 1;
constexpr int kKeyboard = 2;

void check(bool ok, const char* what) {
    if (!ok) {
        throw std::runtime_error(std::string(what) + " failed");
    }
}

/* A session with the trusted application, up to where its images may come. */
class Session {
public:
    explicit Session(const Look& look) {
        check(client_.init() == 0, "opening a session");
        client_.orientation_ = look.portrait ? 1 : 0;
        check(client_.send_ime_type(look.type, 0, look.enlarged, look.highContrast, look.mirrored) == 0, "event 5");
    }
    ~Session() { client_.exit(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    communication::TeeClient& client() { return client_; }

private:
    communication::TeeClient client_;
};

// Returns the bytes of the layout's images.
double loadImages(communication::TeeClient& client, const Look& look) {
    context::ApplicationContextParser parser;
    parser.setMode(look.enlarged, look.highContrast, look.type, look.mirrored, look.portrait ? 1 : 0);
    graphic::ObjectRenderer renderer;
    double bytes = 0;
    renderer.render(
        parser.parse(),
        [&](graphic::Canvas& canvas) {
            bytes += 3.0 * canvas.object(0)->width() * canvas.object(0)->height();
            check(client.loadImage(canvas) == 0, "packing an image");
        },
        [](const std::string& text) { throw std::runtime_error(text); });
    return bytes;
}

// {milliseconds, bytes} of the whole upload of a layout.
std::vector<double> uploadLayout(const Look& look) {
    bench::useTelevision(look);
    const ToolkitSession toolkit;
    Session session(look);
    const double bytes = loadImages(session.client(), look);
    const bench::Clock::time_point start = bench::Clock::now();
    check(session.client().send_data_to_ta() == 0, "the upload");
    return {bench::millisecondsSince(start), bytes};
}

// {milliseconds} of writing that many bytes into a new memory file.
std::vector<double> writeMemoryFile(double bytes) {
    const Bytes data(static_cast<std::size_t>(bytes), 0x5A);
    const bench::Clock::time_point start = bench::Clock::now();
    const int file = memfd_create("yardstick", 0);
    check(write(file, data.data(), data.size()) == static_cast<ssize_t>(data.size()), "writing a memory file");
    close(file);
    return {bench::millisecondsSince(start)};
}

void registerLayout(const Look& look) {
    bench::registerOnce(("images/" + bench::nameOf(look)).c_str(), [look](benchmark::State& state) {
        const std::vector<double> upload = bench::bestInChildren([look] { return uploadLayout(look); }, 5);
        const double written = bench::bestInChildren([&] { return writeMemoryFile(upload[1]); })[0];
        state.SetIterationTime(upload[0] / 1000);
        state.SetLabel("a memory file of as many bytes");
        state.counters["MB"] = upload[1] / kMegabyte;
        state.counters["ratio"] = written / upload[0];
    });
}

double megabytesOf(const std::vector<audio::voice_data>& clips) {
    return std::accumulate(clips.begin(), clips.end(), 0.0, [](double sum, const audio::voice_data& clip) {
        return sum + static_cast<double>(clip.data.size()) / kMegabyte;
    });
}

// The clips are those that the voice maker makes. It speaks a keyboard's for several seconds: once, a PIN pad's will
// do. {milliseconds to compress and send, milliseconds to compress alone, megabytes, clips}
std::vector<double> uploadClips() {
    bench::useTelevision();
    const int type = bench::runsOnce() ? kPinpad : kKeyboard;
    Session session({type});
    check(session.client().send_data_to_ta() == 0, "the upload");
    audio::VoiceGuide& guide = audio::VoiceGuide::instance();
    guide.initialize();
    guide.create(type);
    guide.waitComplete();
    check(guide.enabled(), "the voice maker");
    const std::vector<audio::voice_data> clips = guide.clips();
    bench::Clock::time_point start = bench::Clock::now();
    check(session.client().send_voice_data() == 0, "event 4");
    const double sent = bench::millisecondsSince(start);
    start = bench::Clock::now();
    for (const audio::voice_data& clip : clips) {
        Bytes compressed(2 * clip.data.size() + 15);
        uLongf length = compressed.size();
        check(compress(compressed.data(), &length, clip.data.data(), clip.data.size()) == Z_OK, "compressing");
        benchmark::DoNotOptimize(compressed.data());
    }
    const double compressed = bench::millisecondsSince(start);
    audio::VoiceGuide::destroy();
    return {sent, compressed, megabytesOf(clips), static_cast<double>(clips.size())};
}

bool registerAll() {
    bench::useTelevision();
    for (const int type : {kPinpad, kKeyboard}) {
        for (unsigned bits = 0; bits < (bench::runsOnce() ? 1 : 16); ++bits) {
            registerLayout({type, (bits & 8) != 0, (bits & 4) != 0, (bits & 2) != 0, (bits & 1) != 0});
        }
    }
    bench::registerOnce("voice clips", [](benchmark::State& state) {
        const std::vector<double> best = bench::bestInChildren(uploadClips, 5);
        state.SetIterationTime(best[0] / 1000);
        state.SetLabel("zlib's compress() of the clips");
        state.counters["MB"] = best[2];
        state.counters["clips"] = best[3];
        state.counters["ratio"] = best[1] / best[0];
    });
    return true;
}

[[maybe_unused]] const bool registered = registerAll();

}  // namespace

// The guide ships switched off; here it is on, so that its clips are sent.
int vaultpad::audio::VoiceGuide::getVoiceEnableStatus() {
    return 1;
}
