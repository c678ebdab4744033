#include "process-memory.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <sstream>

namespace {

// A mapping may have holes that cannot be read, of a file that has become shorter for one: those stay out.
std::string readRange(int memory, std::uint64_t start, std::uint64_t end) {
    constexpr std::uint64_t kPiece = 65536;
    std::string content;
    for (std::uint64_t place = start; place < end;) {
        const std::size_t wanted = static_cast<std::size_t>(std::min(kPiece, end - place));
        const std::size_t before = content.size();
        content.resize(before + wanted);
        const ssize_t got = pread(memory, content.data() + before, wanted, static_cast<off_t>(place));
        if (got <= 0) {
            content.resize(before);
            break;
        }
        content.resize(before + static_cast<std::size_t>(got));
        place += static_cast<std::uint64_t>(got);
    }
    return content;
}

}  // namespace

ProcessMemory::ProcessMemory(pid_t pid) {
    const std::string folder = "/proc/" + std::to_string(pid);
    const int memory = open((folder + "/mem").c_str(), O_RDONLY | O_CLOEXEC);
    if (memory < 0) {
        return;
    }
    std::ifstream maps(folder + "/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream words(line);
        std::uint64_t start = 0;
        std::uint64_t end = 0;
        char dash = 0;
        std::string rights;
        words >> std::hex >> start >> dash >> end >> rights;
        if (rights.empty() || rights[0] != 'r' || line.find("[v") != std::string::npos) {
            continue;
        }
        mappings_.push_back({line, readRange(memory, start, end)});
        bytes_ += mappings_.back().content.size();
    }
    close(memory);
}

std::vector<std::string> ProcessMemory::placesOf(const std::string& wanted) const {
    std::vector<std::string> places;
    for (const Mapping& mapping : mappings_) {
        const std::size_t place = mapping.content.find(wanted);
        if (place != std::string::npos) {
            places.push_back(mapping.name + " at byte " + std::to_string(place));
        }
    }
    return places;
}
