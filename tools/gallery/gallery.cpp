#include "gallery/gallery.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <thread>
#include <utility>

#include "data-folder.h"
#include "drawn-layout.h"
#include "gallery/gallery-page.h"
#include "gallery/job-pool.h"
#include "gallery/shared-images.h"
#include "languages.h"
#include "layout.h"
#include "pad-picture.h"
#include "pad/image-id.h"
#include "png-file.h"
#include "render.h"
#include "translated-objects.h"
#include "usage-error.h"

namespace vaultpad::tools {

namespace {

namespace fs = std::filesystem;

// Small enough to show progress, large enough that starting a process does not count.
constexpr std::size_t kLayoutsOfAJob = 8;

using Files = std::vector<fs::path>;
using SharedImages = std::map<fs::path, std::vector<DrawnImage>>;

std::vector<fs::path> layoutsOf(const GalleryOptions& options) {
    std::vector<fs::path> files = options.files;
    std::error_code error;
    if (files.empty()) {
        for (const auto& entry : fs::recursive_directory_iterator(options.resources / "xml", error)) {
            if (layoutKindOf(entry.path())) {
                files.push_back(entry.path());
            }
        }
    }
    if (files.empty()) {
        throw UsageError("there are no layouts in " + (options.resources / "xml").string() +
                         "; name the folder of the resources with --resources");
    }
    // By name without the ending: a layout goes before its variants.
    std::sort(files.begin(), files.end(), [](const fs::path& a, const fs::path& b) {
        return std::pair(a.parent_path(), a.stem()) < std::pair(b.parent_path(), b.stem());
    });
    return files;
}

// Only what the opening page shows: the other pages' keys need not be drawn.
bool isOnOpeningPage(const std::string& id) {
    const auto parsed = secureworld::parseImageId(id);
    return parsed && (parsed->page.empty() || parsed->page == "main");
}

std::vector<DrawnImage> drawOpeningPage(const fs::path& file, bool translated, const GalleryOptions& options) {
    const LayoutKind kind = kindOfPad(file, "");
    const auto layout = readLayout(file, options.resources / "images");
    try {
        return drawLayout(layout, usualOrientation(kind), [&](const std::string& id) {
            return isOnOpeningPage(id) && isTranslated(*layout, id) == translated;
        });
    } catch (const std::exception& error) {
        throw std::runtime_error(file.string() + ": " + error.what());
    }
}

// In a child: what is the same in every language.
std::string drawShared(const fs::path& file, const GalleryOptions& options) {
    applyLanguage(kSourceLanguage, options.resources / "locale");
    return serialised(drawOpeningPage(file, false, options));
}

// In a child: the translated labels, put together with the rest.
std::string drawPictures(const Files& files, const std::string& language, const SharedImages& shared,
                         const GalleryOptions& options) {
    applyLanguage(language, options.resources / "locale");
    for (const fs::path& file : files) {
        const LayoutKind kind = kindOfPad(file, "");
        std::vector<DrawnImage> images = drawOpeningPage(file, true, options);
        const std::vector<DrawnImage>& others = shared.at(file);
        images.insert(images.end(), others.begin(), others.end());
        const secureworld::Bitmap picture = composePad(images, padTypeOf(kind, usualOrientation(kind)), PadState());
        writePng(options.output / pictureOf({file.stem().string(), kind}, language),
                 reduced(picture, options.reduction));
    }
    return {};
}

std::vector<Files> groups(const Files& files) {
    std::vector<Files> result;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (i % kLayoutsOfAJob == 0) {
            result.emplace_back();
        }
        result.back().push_back(files[i]);
    }
    return result;
}

class Progress {
public:
    explicit Progress(std::size_t total) : total_(total), onTerminal_(isatty(STDERR_FILENO) == 1) {}

    void advance(std::size_t count) {
        const std::size_t tenth = done_ * 10 / total_;
        done_ += count;
        if (onTerminal_) {
            std::cerr << "\r" << *this << std::flush;
        } else if (done_ * 10 / total_ != tenth) {
            std::cerr << *this << std::endl;
        }
    }

    void end() const {
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start_;
        std::cerr << (onTerminal_ ? "\r" : "") << *this << ", " << static_cast<int>(time.count() + 0.5) << " s\n";
    }

private:
    friend std::ostream& operator<<(std::ostream& output, const Progress& progress) {
        return output << progress.done_ << " of " << progress.total_ << " pictures";
    }

    std::size_t total_;
    std::size_t done_ = 0;
    bool onTerminal_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

void drawGallery(const Files& files, const std::vector<std::string>& languages, const GalleryOptions& options) {
    const std::size_t processes =
        options.jobs > 0 ? static_cast<std::size_t>(options.jobs) : std::max(1u, std::thread::hardware_concurrency());
    Progress progress(files.size() * languages.size());
    SharedImages shared;
    std::vector<PooledJob> jobs;
    for (const fs::path& file : files) {
        jobs.push_back({[&] { return drawShared(file, options); },
                        [&](const std::string& result) { shared[file] = imagesFrom(result); }});
    }
    runJobs(jobs, processes);
    jobs.clear();
    for (const std::string& language : languages) {
        for (const Files& group : groups(files)) {
            jobs.push_back({[&, group] { return drawPictures(group, language, shared, options); },
                            [&, count = group.size()](const std::string&) { progress.advance(count); }});
        }
    }
    runJobs(jobs, processes);
    progress.end();
}

void writePage(const std::vector<fs::path>& files, const std::vector<std::string>& languages, const fs::path& folder) {
    std::vector<GalleryLayout> layouts;
    for (const fs::path& file : files) {
        layouts.push_back({file.stem().string(), kindOfPad(file, "")});
    }
    for (const char* name : {"gallery.css", "gallery.js"}) {
        fs::copy_file(dataFile(name), folder / name, fs::copy_options::overwrite_existing);
    }
    std::ofstream page(folder / "index.html");
    page << galleryPage(layouts, languages);
    page.close();
    if (!page) {
        throw std::runtime_error((folder / "index.html").string() + " cannot be written");
    }
}

}  // namespace

void makeGallery(const GalleryOptions& options) {
    const std::vector<fs::path> files = layoutsOf(options);
    for (const fs::path& file : files) {
        kindOfPad(file, "");
    }
    const std::vector<std::string> languages =
        options.languages.empty() ? availableLanguages(options.resources / "locale") : options.languages;
    fs::create_directories(options.output / "pictures");
    drawGallery(files, languages, options);
    writePage(files, languages, options.output);
    std::cout << fs::absolute(options.output / "index.html").string() << std::endl;
}

}  // namespace vaultpad::tools
