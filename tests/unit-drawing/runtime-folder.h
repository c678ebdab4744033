/* Keeps the toolkit out of the user's home. */
#ifndef VAULTPAD_UNIT_DRAWING_RUNTIME_FOLDER_H
#define VAULTPAD_UNIT_DRAWING_RUNTIME_FOLDER_H

#include <stdlib.h>

#include "temporary-folder.h"

namespace vaultpad::test {

/*
 * Without XDG_RUNTIME_DIR, EFL makes a folder in the user's home when it is initialised, and aborts when it cannot.
 * While this lives, the variable names a folder of the test's own. Make one before EFL is initialised.
 */
class RuntimeFolder {
public:
    RuntimeFolder() { setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1); }
    ~RuntimeFolder() { unsetenv("XDG_RUNTIME_DIR"); }
    RuntimeFolder(const RuntimeFolder&) = delete;
    RuntimeFolder& operator=(const RuntimeFolder&) = delete;

private:
    TemporaryFolder folder_;
};

}  // namespace vaultpad::test

#endif
