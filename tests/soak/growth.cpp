#include "growth.h"

#include <Ecore_Evas.h>
#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace vaultpad::soak {

namespace {

constexpr const char* kUnnamedFile = "/memfd:";

double residentBytes() {
    std::ifstream file("/proc/self/statm");
    double size = 0;
    double resident = 0;
    file >> size >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

bool isImage(const std::string& path) {
    return path.find("/res/images/") != std::string::npos;
}

void countDescriptors(Holdings& now) {
    std::set<std::string> images;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string target = std::filesystem::read_symlink(entry.path(), gone).string();
        now.descriptors += isImage(target) && images.insert(target).second ? 0 : 1;
        now.memoryFiles += target.rfind(kUnnamedFile, 0) == 0 ? 1 : 0;
    }
    now.images = static_cast<double>(images.size());
}

double countMappedMemoryFiles() {
    int count = 0;
    std::ifstream mappings("/proc/self/maps");
    std::string line;
    while (std::getline(mappings, line)) {
        count += line.find(kUnnamedFile) != std::string::npos ? 1 : 0;
    }
    return count;
}

double countThreads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<double>(std::distance(begin(tasks), end(tasks)));
}

double countWindows() {
    Eina_List* const all = ecore_evas_ecore_evas_list_get();
    const double count = eina_list_count(all);
    eina_list_free(all);
    return count;
}

}  // namespace

Holdings holdings() {
    malloc_trim(0);
    const struct mallinfo2 memory = mallinfo2();
    Holdings now;
    now.allocated = static_cast<double>(memory.uordblks) + static_cast<double>(memory.hblkhd);
    now.resident = residentBytes();
    countDescriptors(now);
    now.memoryFiles += countMappedMemoryFiles();
    now.threads = countThreads();
    now.windows = countWindows();
    return now;
}

void Growth::add(std::size_t sessions, double before, double after) {
    const Point& last = points_.back();
    points_.push_back({last.sessions + static_cast<double>(sessions), last.grown + after - before});
}

double Growth::perSession() const {
    const std::size_t first = points_.size() / 3;
    const double count = static_cast<double>(points_.size() - first);
    double x = 0;
    double y = 0;
    for (std::size_t i = first; i < points_.size(); ++i) {
        x += points_[i].sessions / count;
        y += points_[i].grown / count;
    }
    double above = 0;
    double below = 0;
    for (std::size_t i = first; i < points_.size(); ++i) {
        above += (points_[i].sessions - x) * (points_[i].grown - y);
        below += (points_[i].sessions - x) * (points_[i].sessions - x);
    }
    return below > 0 ? above / below : 0;
}

}  // namespace vaultpad::soak
