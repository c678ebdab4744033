// vaultpad-ta: the emulated trusted application. One process serves one session.
#include <cstdio>
#include <exception>

#include "channel/channel.h"
#include "channel/file-descriptor.h"
#include "hygiene.h"
#include "log.h"
#include "options.h"
#include "server.h"

namespace {

namespace secureworld = vaultpad::secureworld;

constexpr int kFailure = 1;

int serve(const secureworld::Options& options, secureworld::Log* log) {
    try {
        secureworld::Channel channel{secureworld::FileDescriptor(options.channel)};
        secureworld::Server server(&channel, log, options, secureworld::takeSignals());
        return server.run();
    } catch (const std::exception& error) {
        log->line(error.what());
        return kFailure;
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        secureworld::hardenProcess();
        int status = 0;
        const auto options = secureworld::readOptions(argc, argv, &status);
        if (!options) {
            return status;
        }
        secureworld::Log log(options->log);
        return serve(*options, &log);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vaultpad-ta: %s\n", error.what());
        return kFailure;
    }
}
