// File names made from names of the data.
#ifndef KVA_DATA_FILENAME_H
#define KVA_DATA_FILENAME_H

#include <string>

// `name` as the stem of a file that stays in the current folder: every "/" becomes "_",
// and a name that is empty, "." or ".." gets a leading "_".
std::string fileNameOf(const std::string& name);

#endif
