// SPDX-License-Identifier: MIT
#include "platform/Files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace platform {

namespace {

// A transaction writes the new files into the first folder. Once they are on the disk, renaming it
// to the second commits: from then on the files only have to be moved to their places, by this run
// of the program or by the next.
constexpr char kPreparing[] = "files.preparing";
constexpr char kPrepared[] = "files.prepared";

constexpr mode_t kNewFileMode = 0666;  // less the user's mask
constexpr mode_t kNewFolderMode = 0777;

// A file that keeps more bytes than these is too long to copy; it is written in place.
constexpr off_t kLongestCopy = 1 << 20;

// A pipe or a device in a file's place must not hold the program up.
constexpr int kOpenFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

class File {
 public:
  File(const fs::path& path, int flags)
      : descriptor_(open(path.c_str(), flags | kOpenFlags, kNewFileMode)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { Close(); }

  bool IsOpen() const { return descriptor_ >= 0; }
  int Descriptor() const { return descriptor_; }
  bool Close() {
    const bool closed = descriptor_ < 0 || close(descriptor_) == 0;
    descriptor_ = -1;
    return closed;
  }

 private:
  int descriptor_;
};

// One program at a time changes the files of a folder. A file system without locks goes without.
class FolderLock {
 public:
  FolderLock(const fs::path& folder, int operation)
      : folder_(folder, O_RDONLY | O_DIRECTORY),
        held_(folder_.IsOpen() &&
              (flock(folder_.Descriptor(), operation) == 0 || errno != EWOULDBLOCK)) {}

  bool IsHeld() const { return held_; }

 private:
  File folder_;
  bool held_;
};

std::optional<std::string> ReadAt(const File& file, off_t offset, std::size_t size) {
  std::string bytes(size, '\0');
  const ssize_t got = pread(file.Descriptor(), bytes.data(), size, offset);
  if (got < 0) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(got));
  return bytes;
}

bool WriteAll(const File& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file.Descriptor(), bytes.data(), bytes.size());
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// `sync` is fsync, for the names in `folder`, or syncfs, for all of its file system: one wait,
// however many files are new. Some file systems can't sync a folder and say EINVAL.
bool Sync(const fs::path& folder, int (*sync)(int)) {
  const File file(folder, O_RDONLY | O_DIRECTORY);
  return file.IsOpen() && (sync(file.Descriptor()) == 0 || errno == EINVAL);
}

// Yields whether no prepared file is left. On a disk that keeps no order of its own, a file must
// not leave the folder before the folder's name is safe, nor the folder go before the file's place.
bool MoveIntoPlace(const fs::path& folder) {
  const fs::path prepared = folder / kPrepared;
  std::error_code ignored;
  if (!fs::is_directory(fs::symlink_status(prepared, ignored))) return true;
  bool moved = Sync(folder, fsync);
  for (const std::string& name : ListFiles(prepared))
    moved = moved && std::rename((prepared / name).c_str(), (folder / name).c_str()) == 0;
  return moved && Sync(folder, fsync) && rmdir(prepared.c_str()) == 0;
}

bool Settle(const fs::path& folder) {
  std::error_code ignored;
  fs::remove_all(folder / kPreparing, ignored);
  return MoveIntoPlace(folder);
}

// The file's new content. Nothing where it can't be replaced: a folder is in its place, or what it
// keeps can't be read or is too long.
std::optional<std::string> WholeFile(const FileChange& change) {
  struct stat status;
  if (stat(change.path.c_str(), &status) != 0) return change.bytes;
  if (S_ISDIR(status.st_mode)) return std::nullopt;
  const auto head = static_cast<off_t>(change.bytes.size());
  if (!change.keepsRest || status.st_size <= head) return change.bytes;
  if (status.st_size > kLongestCopy) return std::nullopt;
  const File file(change.path, O_RDONLY);
  const auto rest = ReadAt(file, head, static_cast<std::size_t>(status.st_size - head));
  return rest ? std::optional(change.bytes + *rest) : std::nullopt;
}

std::optional<std::vector<std::string>> WholeFiles(const std::vector<FileChange>& changes) {
  std::vector<std::string> files;
  for (const FileChange& change : changes) {
    const auto file = WholeFile(change);
    if (!file) return std::nullopt;
    files.push_back(*file);
  }
  return files;
}

bool WriteNewFile(const fs::path& path, std::string_view bytes) {
  File file(path, O_WRONLY | O_CREAT | O_EXCL);
  return file.IsOpen() && WriteAll(file, bytes) && file.Close();
}

bool WriteNewFiles(const fs::path& folder, const std::vector<FileChange>& changes,
                   const std::vector<std::string>& files) {
  for (std::size_t i = 0; i < files.size(); ++i)
    if (!WriteNewFile(folder / fs::path(changes[i].path).filename(), files[i])) return false;
  return Sync(folder, syncfs);
}

// After a folder could not be made: whether that is forbidden there, or something has its name.
bool MustWriteInPlace() {
  return errno == EACCES || errno == EPERM || errno == EEXIST;
}

// Yields whether `file` has room for `bytes` from its first byte on, as far as the file system
// tells.
bool TakeRoom(const File& file, const std::string& bytes) {
  const auto size = static_cast<off_t>(bytes.size());
  return fallocate(file.Descriptor(), FALLOC_FL_KEEP_SIZE, 0, size) == 0 || errno == EOPNOTSUPP;
}

void WriteInPlace(const std::vector<FileChange>& changes) {
  std::deque<File> files;
  for (const FileChange& change : changes) {
    const File& file = files.emplace_back(change.path, O_WRONLY);
    if (!file.IsOpen() || !TakeRoom(file, change.bytes)) return;
  }
  for (std::size_t i = 0; i < changes.size(); ++i) {
    const std::string& bytes = changes[i].bytes;
    const bool cut = WriteAll(files[i], bytes) && !changes[i].keepsRest;
    if (cut && ftruncate(files[i].Descriptor(), static_cast<off_t>(bytes.size())) != 0) return;
  }
}

}  // namespace

std::optional<std::string> ReadHead(const std::string& path, std::size_t size) {
  const File file(path, O_RDONLY | O_CREAT);
  return ReadAt(file, 0, size);
}

std::optional<std::string> ReadEnd(const std::string& path, std::size_t size) {
  const File file(path, O_RDONLY);
  struct stat status;
  if (fstat(file.Descriptor(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  const off_t length = std::min(status.st_size, static_cast<off_t>(size));
  return ReadAt(file, status.st_size - length, static_cast<std::size_t>(length));
}

void ChangeFiles(const std::vector<FileChange>& changes) {
  const fs::path folder = fs::path(changes.front().path).parent_path();
  const fs::path preparing = folder / kPreparing;
  const FolderLock lock(folder, LOCK_EX);
  if (!lock.IsHeld() || !Settle(folder)) return;
  const auto files = WholeFiles(changes);
  if (files && mkdir(preparing.c_str(), kNewFolderMode) == 0) {
    if (WriteNewFiles(preparing, changes, *files))
      std::rename(preparing.c_str(), (folder / kPrepared).c_str());
    Settle(folder);
  } else if (!files || MustWriteInPlace()) {
    WriteInPlace(changes);
  }
}

void SettleFiles(const std::string& folder) {
  const fs::path place = folder;
  std::error_code ignored;
  if (!fs::exists(fs::symlink_status(place / kPreparing, ignored)) &&
      !fs::exists(fs::symlink_status(place / kPrepared, ignored)))
    return;
  const FolderLock lock(place, LOCK_EX | LOCK_NB);
  if (lock.IsHeld()) Settle(place);
}

std::vector<std::string> ListFiles(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code failed;
  for (fs::directory_iterator file(folder, failed), end; !failed && file != end;
       file.increment(failed))
    if (IsFile(file->path())) names.push_back(file->path().filename());
  return names;
}

bool IsFile(const std::string& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

}  // namespace platform
