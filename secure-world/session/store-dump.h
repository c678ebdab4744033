// Writes the image store to a folder, so that a test of the transfer can compare it with what was sent.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_STORE_DUMP_H
#define VAULTPAD_SECURE_WORLD_SESSION_STORE_DUMP_H

#include <string>

#include "session/image-store.h"

namespace vaultpad::secureworld {

// Writes each image's packed pixels to NNN.bin, in the order of arrival from 001, and then index.tsv, one line per
// image: NNN, name, x, y, width, height, bytes, with x and y as received; bytes of a name that are not printable
// ASCII are written as \xHH. The index appears whole, after all pixels. Creates the folder when it is missing.
// Throws std::runtime_error when a file cannot be written.
void dumpStore(const ImageStore& store, const std::string& folder);

}  // namespace vaultpad::secureworld

#endif
