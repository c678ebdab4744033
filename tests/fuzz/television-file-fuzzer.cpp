// The television's key file.
#include "fuzzer.h"
#include "television-file.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vaultpad::host::Television television;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> problems =
        vaultpad::host::parseTelevision(text, "folder/television.ini", television);
    if (problems.empty()) {
        vaultpad::fuzz::require(television.volume >= 0 && television.volume <= 100);
        vaultpad::fuzz::require(television.taTimeoutSeconds >= 1 && television.taTimeoutSeconds <= 600);
    }
    return 0;
}
