// A folder that receives one file after the other, each with the next number in its name.
#ifndef VAULTPAD_SECURE_WORLD_NUMBERED_FILES_H
#define VAULTPAD_SECURE_WORLD_NUMBERED_FILES_H

#include <filesystem>
#include <string>

namespace vaultpad::secureworld {

class NumberedFiles {
public:
    // The files are called STEM-NNNN and an ending. Creates the folder when it is missing; the numbers start at 0001,
    // or go on behind the files of an earlier session. Throws std::runtime_error when the folder cannot be written to.
    NumberedFiles(const std::string& folder, std::string stem);

    // Where the next file is written before it gets its name: whoever watches the folder finds whole files only.
    std::filesystem::path unfinished() const { return folder_ / ("." + stem_ + ".new"); }

    // Gives the unfinished file the next number and the ending. Throws std::runtime_error; its text leaves the ending
    // out, which may tell a secret.
    void publish(const std::string& ending);

private:
    std::filesystem::path folder_;
    std::string stem_;
    unsigned number_ = 0;  // of the latest file
};

}  // namespace vaultpad::secureworld

#endif
