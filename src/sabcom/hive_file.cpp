#include "sabcom/hive_file.h"

#include <utility>

#include "sabcom/hive_text.h"

namespace sabcom {

HiveFile& HiveFile::Instance() {
  static HiveFile* const file = new HiveFile;  // never destroyed: libraries unload late
  return *file;
}

Key& HiveFile::Tree() {
  if (changes_ == 0) {
    std::string path = HivePath();
    if (path != path_) {
      tree_.reset();
      path_ = std::move(path);
    }
    Read();
  }
  return *tree_;
}

void HiveFile::Read() {
  if (tree_ && IdentifyHive(path_) == read_from_) return;
  tree_.reset();
  FileIdentity identity;
  const std::optional<std::string> text = ReadHive(path_, identity);
  std::unique_ptr<Key> tree = text ? ParseHive(path_, *text) : std::make_unique<Key>();
  // These are always there, as in any registry, so that programs can add below them.
  bool created = false;
  for (const char16_t* known : {u"HKEY_CLASSES_ROOT\\AppID", u"HKEY_CLASSES_ROOT\\CLSID",
                                u"HKEY_CURRENT_USER\\Software\\Classes",
                                u"HKEY_LOCAL_MACHINE\\Software\\Classes", u"HKEY_USERS"}) {
    tree->FindOrCreate(known, created);
  }
  tree_ = std::move(tree);
  read_from_ = identity;
  ++generation_;
}

void HiveFile::Begin() {
  if (changes_ == 0) {
    Tree();  // a file that cannot be read needs no lock
    lock_.emplace(path_);
    try {
      Read();  // another process may have written meanwhile
    } catch (...) {
      lock_.reset();
      throw;
    }
    is_changed_ = false;
  }
  ++changes_;
}

Key& HiveFile::TreeForChange() {
  is_changed_ = true;
  ++generation_;
  return *tree_;
}

void HiveFile::Keep() {
  if (changes_ > 1 || !is_changed_) return;
  lock_->Replace(FormatHive(*tree_));
  is_changed_ = false;
  try {
    read_from_ = IdentifyHive(path_);
  } catch (...) {
    tree_.reset();  // written it is; the next user reads it again
  }
}

void HiveFile::End() noexcept {
  if (--changes_ > 0) return;
  if (is_changed_) tree_.reset();
  lock_.reset();
}

}  // namespace sabcom
