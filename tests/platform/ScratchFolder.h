// SPDX-License-Identifier: MIT
// An empty folder for as long as a test needs one.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

/// Goes with all that lies in it, also where a test has taken rights away. Throws if there is no
/// room for a folder.
class ScratchFolder {
 public:
  ScratchFolder() {
    namespace fs = std::filesystem;
    // In memory where that can be had: on a disk, thousands of replaced files take half a minute.
    const fs::path memory = "/dev/shm";
    path_ = (fs::is_directory(memory) ? memory : fs::temp_directory_path()) / "glimmerfall-XXXXXX";
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no scratch folder");
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  /// Without a slash at its end.
  const std::string& Path() const { return path_; }
  std::string Path(const std::string& name) const { return path_ + '/' + name; }

 private:
  std::string path_;
};
