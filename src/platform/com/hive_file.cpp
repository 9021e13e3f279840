#include "platform/com/hive_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace sabcom {
namespace {

[[noreturn]] void FailSystem(const std::string& path, const char* action) {
  throw HiveError{path + ": cannot " + action + " the registry: " + std::strerror(errno) +
                  ". Set SABCOM_REGISTRY to a file that you may write."};
}

class Descriptor {
 public:
  explicit Descriptor(int value) : value_(value) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (value_ >= 0) close(value_);
  }
  int Get() const { return value_; }

 private:
  int value_;
};

void WriteAll(int descriptor, const std::string& text, const std::string& path) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t written = write(descriptor, text.data() + done, text.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written == 0) errno = ENOSPC;
    if (written <= 0) FailSystem(path, "write");
    done += static_cast<std::size_t>(written);
  }
}

}  // namespace

HiveFile& HiveFile::Instance() {
  static HiveFile* const file = new HiveFile;  // never destroyed: libraries unload late
  return *file;
}

std::string HiveFile::DefaultPath() {
  if (const char* const given = std::getenv("SABCOM_REGISTRY"); given && *given) return given;
  std::string folder;
  if (const char* const data = std::getenv("XDG_DATA_HOME"); data && *data == '/') {
    folder = data;
  } else if (const char* const home = std::getenv("HOME"); home && *home) {
    folder = std::string(home) + "/.local/share";
  } else {
    throw HiveError{"There is no place for the registry: set SABCOM_REGISTRY or HOME."};
  }
  return folder + "/sabcom/registry.reg";
}

HiveFile::Identity HiveFile::IdentityOfFile() const {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

bool HiveFile::IsUnchanged(const Identity& now) const {
  return tree_ && now.device == read_from_.device && now.inode == read_from_.inode &&
         now.size == read_from_.size && now.modified.tv_sec == read_from_.modified.tv_sec &&
         now.modified.tv_nsec == read_from_.modified.tv_nsec;
}

void HiveFile::Begin() {
  std::string path = DefaultPath();
  if (path != path_) {
    path_ = std::move(path);
    tree_.reset();
  }
  Refresh();
}

void HiveFile::Refresh() {
  // Under the lock nobody else writes, and the tree may be ahead of the file.
  if (lock_ < 0 || !tree_) Read();
}

void HiveFile::Read() {
  const Identity now = IdentityOfFile();
  if (IsUnchanged(now)) return;
  tree_.reset();
  std::unique_ptr<Key> tree;
  std::ifstream file(path_, std::ios::binary);
  if (file) {
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    if (file.bad()) FailSystem(path_, "read");
    tree = ParseHive(path_, text);
  } else if (errno == ENOENT || errno == ENOTDIR) {
    tree = std::make_unique<Key>();
  } else {
    FailSystem(path_, "read");
  }
  // These are always there, as in any registry, so that whoever adds below them need not care.
  bool created = false;
  for (const char16_t* known : {u"HKEY_CLASSES_ROOT\\AppID", u"HKEY_CLASSES_ROOT\\CLSID",
                                u"HKEY_CURRENT_USER\\Software\\Classes",
                                u"HKEY_LOCAL_MACHINE\\Software\\Classes", u"HKEY_USERS"}) {
    tree->FindOrCreate(known, created);
  }
  tree_ = std::move(tree);
  read_from_ = now;
}

Key& HiveFile::TreeForChange() {
  if (lock_ < 0) Lock();
  is_changed_ = true;
  return *tree_;
}

void HiveFile::Lock() {
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), ignored);
  const std::string name = path_ + ".lock";
  lock_ = open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (lock_ < 0) FailSystem(name, "open");
  while (flock(lock_, LOCK_EX) != 0) {
    if (errno != EINTR) {
      Unlock();
      FailSystem(name, "lock");
    }
  }
  Read();  // somebody may have written while we waited
}

void HiveFile::Unlock() {
  if (lock_ >= 0) close(lock_);
  lock_ = -1;
}

void HiveFile::Flush() {
  if (!is_changed_) return;
  const std::string text = FormatHive(*tree_);
  const std::string temporary = path_ + ".new";
  try {
    {
      const Descriptor file(
          open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
      if (file.Get() < 0) FailSystem(temporary, "write");
      WriteAll(file.Get(), text, temporary);
      if (fsync(file.Get()) != 0) FailSystem(temporary, "write");
    }
    if (rename(temporary.c_str(), path_.c_str()) != 0) FailSystem(path_, "replace");
  } catch (const HiveError&) {
    unlink(temporary.c_str());
    tree_.reset();  // it no longer tells what the file says
    throw;
  }
  is_changed_ = false;
  read_from_ = IdentityOfFile();
}

void HiveFile::End() {
  try {
    Flush();
  } catch (...) {
    is_changed_ = false;
    Unlock();
    throw;
  }
  Unlock();
}

}  // namespace sabcom
