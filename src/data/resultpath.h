// Paths of the data file and the result folder. InitPath itself is an operation of
// AnalyseDataObj.
#ifndef KVA_DATA_RESULTPATH_H
#define KVA_DATA_RESULTPATH_H

#include <string>

// The folder of a file, from the file's absolute path: the part before its last "/"; "/" for a
// file of the root folder.
std::string folderOf(const std::string& path);

#endif
