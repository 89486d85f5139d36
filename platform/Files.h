// SPDX-License-Identifier: MIT
// Small files: the head or the end of one is read, several are changed in one transaction, and
// those of a folder are listed. Paths are absolute. No call throws, and none blocks on a pipe or a
// device that lies in a file's place.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// The first bytes of the file at `path`, at most `size`. Creates an empty file where there is
/// none. Nothing if it can't be opened or read.
std::optional<std::string> ReadHead(const std::string& path, std::size_t size);

/// The last bytes of the regular file at `path`, at most `size`. Nothing if it can't be read.
std::optional<std::string> ReadEnd(const std::string& path, std::size_t size);

/// What a file is to hold; it is created where there is none.
struct FileChange {
  std::string path;
  std::string bytes;       ///< one or more, from the file's first byte on
  bool keepsRest = false;  ///< what the file holds behind `bytes` stays; else it is cut off
};

/// Makes `changes`, one or more in one folder, as a transaction: all or none, also when the program
/// is killed or the power fails, and durable when the call returns. Where the folder can't be
/// written but each of the files can, they are overwritten in place once their room on the disk is
/// reserved; a kill can then leave some old and some new. No failure is reported.
void ChangeFiles(const std::vector<FileChange>& changes);

/// Completes or rolls back a transaction on files of `folder` that was cut short. Costs next to
/// nothing when there is none; to be called before such files are read.
void SettleFiles(const std::string& folder);

/// The names of the regular files in `folder`, in the order that the file system gives; none if it
/// can't be read.
std::vector<std::string> ListFiles(const std::string& folder);

/// Whether a regular file is at `path`.
bool IsFile(const std::string& path);

}  // namespace platform
