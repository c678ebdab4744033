// What the voice guide does to the rest of the system, seen from outside the built library. The file is linked twice:
// with the shipped library, which must leave no trace, and with the speaking one, which shows that traces are seen.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "client.h"
#include "television.h"

namespace {

/* In memory that forked children share. */
struct Traces {
    std::atomic<int> voiceMakers;
    std::atomic<int> boundSockets;
    std::atomic<int> accepted;
    std::atomic<int> volumeReads;
    std::atomic<int> volumeChanges;
    std::atomic<int> speakerReads;
};

Traces& traces() {
    static auto* const shared =
        new (mmap(nullptr, sizeof(Traces), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Traces{};
    return *shared;
}

template <typename Function>
Function* next(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

#define INTERPOSED extern "C" __attribute__((visibility("default")))

INTERPOSED int execl(const char* path, const char* argument, ...) {
    traces().voiceMakers += endsWith(path, "/vault-voice-maker") ? 1 : 0;
    std::vector<char*> arguments;
    va_list list;
    va_start(list, argument);
    for (const char* word = argument; word != nullptr; word = va_arg(list, const char*)) {
        arguments.push_back(const_cast<char*>(word));
    }
    va_end(list);
    arguments.push_back(nullptr);
    return execv(path, arguments.data());
}

INTERPOSED int bind(int socket, const sockaddr* address, socklen_t length) {
    ++traces().boundSockets;
    return next(bind, "bind")(socket, address, length);
}

INTERPOSED int accept(int socket, sockaddr* address, socklen_t* length) {
    ++traces().accepted;
    return next(accept, "accept")(socket, address, length);
}

INTERPOSED int sound_manager_get_master_volume(int* volume) {
    ++traces().volumeReads;
    return next(sound_manager_get_master_volume, "sound_manager_get_master_volume")(volume);
}

INTERPOSED int sound_manager_set_master_volume(int volume) {
    ++traces().volumeChanges;
    return next(sound_manager_set_master_volume, "sound_manager_set_master_volume")(volume);
}

INTERPOSED int sound_manager_get_speaker_selection(int* selection) {
    ++traces().speakerReads;
    return next(sound_manager_get_speaker_selection, "sound_manager_get_speaker_selection")(selection);
}

namespace {

class GuideTraces : public testing::TestWithParam<int> {
protected:
    GuideTraces() {
        // Here, before anything forks.
        new (&traces()) Traces{};
        television_.apply();
    }

    Television television_;
    Client client_;
};

/* A whole session, with the keys that have to do with sound. */
void useAPad(Client& client, int type) {
    ASSERT_EQ(client.open(type), 0);
    client.pressAll("XF86AudioRaiseVolume,XF86AudioLowerVolume,XF86AudioLowerVolume,Right,Return,XF86Back");
    CsapiVPADclose();
}

}  // namespace

#if VAULTPAD_TEST_GUIDE_IS_ON

TEST_P(GuideTraces, OfTheSpeakingLibraryAreSeen) {
    useAPad(client_, GetParam());
    EXPECT_EQ(traces().voiceMakers, 1);
    EXPECT_GE(traces().boundSockets, 1);
    EXPECT_GE(traces().accepted, 15);
    EXPECT_EQ(traces().volumeReads, 3);
    EXPECT_EQ(traces().volumeChanges, 3);
    EXPECT_EQ(traces().speakerReads, 1);
}

#else

TEST_P(GuideTraces, OfTheShippedLibraryAreNone) {
    useAPad(client_, GetParam());
    EXPECT_EQ(traces().voiceMakers, 0);
    EXPECT_EQ(traces().boundSockets, 0);
    EXPECT_EQ(traces().accepted, 0);
    EXPECT_EQ(traces().volumeReads, 0);
    EXPECT_EQ(traces().volumeChanges, 0);
    EXPECT_EQ(traces().speakerReads, 0);
    EXPECT_THAT(television_.log(), testing::HasSubstr("[TUI NWD] Disable voice guide"));
}

#endif

INSTANTIATE_TEST_SUITE_P(, GuideTraces, testing::Values(VAULTPAD_TYPE_PINPAD, VAULTPAD_TYPE_KEYBOARD));
