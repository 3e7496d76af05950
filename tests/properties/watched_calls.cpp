#include "tests/properties/watched_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

std::vector<std::string>* watch_list;

// The path with its folder resolved. What lies in a folder that isn't there can't come to be.
std::string Resolved(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  char* resolved = realpath(folder.c_str(), nullptr);
  if (resolved == nullptr) return path;
  const std::string text = resolved;
  std::free(resolved);
  return text + "/" + path.substr(slash + 1);
}

void Note(const char* path) {
  if (watch_list == nullptr) return;
  std::vector<std::string>* const list = watch_list;
  watch_list = nullptr;  // the resolving is not the program's
  list->push_back(Resolved(path));
  watch_list = list;
}

template <typename Function>
Function* Next(Function* /*own*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

ScopedWatch::ScopedWatch() {
  if (watch_list != nullptr) throw std::logic_error("two watches at once");
  watch_list = &changed_;
}

ScopedWatch::~ScopedWatch() {
  watch_list = nullptr;
}

extern "C" {

int open(const char* path, int flags, ...) {
  if ((flags & O_ACCMODE) != O_RDONLY || (flags & (O_CREAT | O_TRUNC)) != 0) Note(path);
  std::va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = (flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0;
  va_end(arguments);
  static auto* const next =
      reinterpret_cast<int (*)(const char*, int, ...)>(dlsym(RTLD_NEXT, "open"));
  return next(path, flags, mode);
}

std::FILE* fopen(const char* path, const char* mode) {
  if (mode[0] != 'r' || std::string(mode).find('+') != std::string::npos) Note(path);
  static auto* const next = Next(&fopen, "fopen");
  return next(path, mode);
}

int mkstemp(char* pattern) {
  Note(pattern);
  static auto* const next = Next(&mkstemp, "mkstemp");
  return next(pattern);
}

int mkdir(const char* path, mode_t mode) noexcept {
  Note(path);
  static auto* const next = Next(&mkdir, "mkdir");
  return next(path, mode);
}

int rmdir(const char* path) noexcept {
  Note(path);
  static auto* const next = Next(&rmdir, "rmdir");
  return next(path);
}

int unlink(const char* path) noexcept {
  Note(path);
  static auto* const next = Next(&unlink, "unlink");
  return next(path);
}

int remove(const char* path) noexcept {
  Note(path);
  static auto* const next = Next(&remove, "remove");
  return next(path);
}

int rename(const char* from, const char* to) noexcept {
  Note(from);
  Note(to);
  static auto* const next = Next(&rename, "rename");
  return next(from, to);
}

int chmod(const char* path, mode_t mode) noexcept {
  Note(path);
  static auto* const next = Next(&chmod, "chmod");
  return next(path, mode);
}
}
