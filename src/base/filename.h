// File names made from names of the data.
#ifndef KVA_BASE_FILENAME_H
#define KVA_BASE_FILENAME_H

#include <string>

namespace kva {

// `name`, the whole name of a file with a name of the data in it, as one that stays in the current
// folder: every "/" becomes "_". A whole name that is empty, "." or ".." gets a leading "_"; a
// name of the data that is one of these is left alone ("IM_A_.txt", "...beau.infile"). No file is
// touched.
std::string fileNameOf(const std::string& name);

} // namespace kva

#endif
