#include "television-fixture.h"

#include <stdlib.h>
#include <vaultpad-platform/vconf.h>

#include <fstream>
#include <sstream>

TelevisionFixture::TelevisionFixture() {
    std::string name = testing::TempDir() + "vaultpad-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
        ADD_FAILURE() << "no temporary folder " << name;
    }
    folder_ = name;
    file_ = folder_ / "television.ini";
    unsetenv("VAULTPAD_TELEVISION");
}

TelevisionFixture::~TelevisionFixture() {
    unsetenv("VAULTPAD_TELEVISION");
    std::filesystem::remove_all(folder_);
}

void TelevisionFixture::useTelevision(const std::string& text) {
    const std::filesystem::path written = folder_ / "television.new";
    std::ofstream(written) << text;
    std::filesystem::rename(written, file_);
    setenv("VAULTPAD_TELEVISION", file_.c_str(), 1);
}

std::string TelevisionFixture::problemsOf(const std::string& text) {
    useTelevision(text);
    testing::internal::CaptureStderr();
    int value = 0;
    vconf_get_int("db/menu/system/accessibility/focuszoom", &value);
    return testing::internal::GetCapturedStderr();
}

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    EXPECT_TRUE(stream.is_open()) << file;
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}
