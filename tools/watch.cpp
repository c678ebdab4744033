#include "watch.h"

#include <poll.h>
#include <sys/inotify.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <iostream>
#include <system_error>

#include "check/finding.h"
#include "child-job.h"
#include "layout.h"

namespace vaultpad::tools {

namespace {

// Editors write, rename and touch in one go: what follows within this time belongs to the same change.
constexpr int kSettlingMilliseconds = 80;
constexpr std::uint32_t kChanges = IN_CLOSE_WRITE | IN_MOVED_TO;

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

class Descriptor {
public:
    Descriptor(int number, const char* what) : number_(number) {
        if (number_ < 0) {
            fail(what);
        }
    }
    ~Descriptor() { close(number_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return number_; }

private:
    int number_;
};

// The signals that end the program, to be read instead of handled.
int endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC);
}

std::string timeOfDay() {
    const std::time_t now = std::time(nullptr);
    std::array<char, 16> text{};
    std::tm local{};
    localtime_r(&now, &local);
    std::strftime(text.data(), text.size(), "%H:%M:%S", &local);
    return text.data();
}

void drawOnce(const RenderOptions& picture, const CheckOptions& check) {
    const auto start = std::chrono::steady_clock::now();
    std::string outcome;
    try {
        const std::size_t findings = checkFiles({picture.file}, check);
        ChildJob([&] {
            render(picture);
            return std::string();
        }).result();
        outcome = "drawn to " + picture.output.string() + ", " + std::to_string(findings) +
                  (findings == 1 ? " finding" : " findings");
    } catch (const std::exception& error) {
        outcome = "not drawn: " + onOneLine(error.what());
    }
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    std::cout << timeOfDay() << " " << picture.file.string() << ": " << outcome << " (" << time.count() << " ms)"
              << std::endl;
}

// The folder of the layout's images, as far as it can be told.
std::filesystem::path imagesOf(const RenderOptions& picture) {
    try {
        return picture.images.empty() ? std::filesystem::path(readLayout(picture.file, "")->imageBaseDirectory())
                                      : picture.images;
    } catch (const std::exception&) {
        return {};  // drawing will tell
    }
}

// Reads what has happened; whether it concerns the layout, or an image. The picture may be drawn into their folder.
bool concerns(int notifications, int imageFolder, const RenderOptions& files) {
    const std::string layout = files.file.filename().string();
    const std::string picture = files.output.filename().string();
    alignas(inotify_event) std::array<char, 4096> buffer{};
    const ssize_t length = read(notifications, buffer.data(), buffer.size());
    bool concerned = false;
    for (ssize_t offset = 0; offset < length;) {
        const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + offset);
        const std::string name = event->len > 0 ? event->name : "";
        // A full queue has lost events: better draw once too often.
        concerned = concerned || name == layout || (event->wd == imageFolder && name.rfind(picture, 0) != 0) ||
                    (event->mask & IN_Q_OVERFLOW) != 0;
        offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
    return concerned;
}

// Waits for something to read on either; false when the program is to end.
bool waitForChange(int notifications, int ending, int milliseconds, bool* changed) {
    std::array<pollfd, 2> sources = {{{notifications, POLLIN, 0}, {ending, POLLIN, 0}}};
    const int ready = poll(sources.data(), sources.size(), milliseconds);
    *changed = ready > 0 && (sources[0].revents & POLLIN) != 0;
    return ready < 1 || (sources[1].revents & POLLIN) == 0;
}

}  // namespace

void watch(const RenderOptions& picture, const CheckOptions& check) {
    const Descriptor ending(endSignals(), "signals cannot be read");
    const Descriptor notifications(inotify_init1(IN_CLOEXEC | IN_NONBLOCK), "changes cannot be watched");
    const std::filesystem::path folder = std::filesystem::absolute(picture.file).parent_path();
    if (inotify_add_watch(notifications.number(), folder.c_str(), kChanges) < 0) {
        fail(folder.string() + " cannot be watched");
    }
    // Without one, changes of the layout alone are seen.
    const int imageFolder = inotify_add_watch(notifications.number(), imagesOf(picture).c_str(), kChanges);
    drawOnce(picture, check);
    bool due = false;
    for (;;) {
        bool changed = false;
        if (!waitForChange(notifications.number(), ending.number(), due ? kSettlingMilliseconds : -1, &changed)) {
            return;
        }
        if (changed) {
            due = concerns(notifications.number(), imageFolder, picture) || due;
        } else if (due) {
            due = false;
            drawOnce(picture, check);
        }
    }
}

}  // namespace vaultpad::tools
