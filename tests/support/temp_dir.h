// Folders and files for tests.
#pragma once

#include <map>
#include <string>

// A new folder of its own, removed with all it holds.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  // Without a trailing separator.
  const std::string& path() const { return path_; }
  std::string operator/(const std::string& below) const { return path_ + "/" + below; }

 private:
  std::string path_;
};

// Writes a file, making its folders; throws when that fails.
void WriteFile(const std::string& path, const std::string& content);

// The whole file; throws when it can't be read.
std::string ReadFile(const std::string& path);

// Everything below `path`: relative path to content; a folder's ends in '/' and holds nothing, a
// link holds "-> target".
std::map<std::string, std::string> ReadTree(const std::string& path);

// Sets an environment variable for the life of the object.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const std::string& value);
  ~ScopedEnvironment();
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  std::string name_;
  std::string old_value_;
  bool was_set_;
};

// Makes an existing folder the process's current one for the life of the object.
class ScopedCurrentFolder {
 public:
  explicit ScopedCurrentFolder(const std::string& path);
  ~ScopedCurrentFolder();
  ScopedCurrentFolder(const ScopedCurrentFolder&) = delete;
  ScopedCurrentFolder& operator=(const ScopedCurrentFolder&) = delete;

 private:
  std::string before_;
};

// Gives up root's rights over files for the life of the object, so that a refused access is
// refused for the test as well. Nothing happens where the test doesn't run as root.
class ScopedOrdinaryUser {
 public:
  ScopedOrdinaryUser();
  ~ScopedOrdinaryUser();
  ScopedOrdinaryUser(const ScopedOrdinaryUser&) = delete;
  ScopedOrdinaryUser& operator=(const ScopedOrdinaryUser&) = delete;

 private:
  bool dropped_ = false;
};
