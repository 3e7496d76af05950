#include "tests/faults/fault_layer.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

enum class Action { kFail, kKill, kSwap };

// All that the layer knows, on the heap from the moment it is armed until the process ends.
struct State {
  std::string root;
  long at = 0;
  std::string on;
  Action action = Action::kFail;
  int error = 0;
  std::string from;
  std::string instead;
  std::string report;

  long count = 0;
  std::vector<std::string> operations;
  std::vector<std::string> outside;
  std::map<const void*, std::string> streams;  // FILE and DIR
  std::map<int, std::string> descriptors;
  std::map<int, std::string> of_streams;  // descriptors that their streams close
};
State* state;

// The function behind the layer: the C library's, whoever stands before it.
template <typename Function>
Function Real(const char* name, Function /*model*/) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}
#define REAL(name) static const auto real = Real(#name, &::name)

std::string FromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool IsBelow(const std::string& path, const std::string& folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

// The archive library's temporary files end in six random characters behind "<archive>.".
std::string WithoutRandomEnd(std::string path) {
  const std::size_t jar = path.rfind(".jar.");
  if (jar != std::string::npos && path.size() == jar + 11) path.replace(jar + 5, 6, "XXXXXX");
  return path;
}

// The layer's own renames and writes must not count.
void Swap() {
  const std::string away = state->from + ".away";
  renameat(AT_FDCWD, state->from.c_str(), AT_FDCWD, away.c_str());
  if (state->instead.empty()) return;
  renameat(AT_FDCWD, state->instead.c_str(), AT_FDCWD, state->from.c_str());
}

// Counts the operation; true when it is to fail, with errno set. `path` is empty for what the layer
// doesn't follow.
bool Fails(const char* operation, const std::string& path) {
  if (state == nullptr || path.empty() || !IsBelow(path, state->root)) return false;
  const std::string line = operation + (" " + WithoutRandomEnd(path));
  const bool named = !state->on.empty() && line == state->on;
  const bool met = ++state->count == state->at || named;
  if (named) state->on.clear();
  state->operations.push_back((met ? "! " : "") + line);
  if (!met) return false;
  if (state->action == Action::kKill) raise(SIGKILL);
  if (state->action == Action::kSwap) {
    const int saved = errno;
    Swap();
    errno = saved;
    return false;
  }
  errno = state->error;
  return true;
}

bool KillsNext(const std::string& path) {
  return state != nullptr && state->action == Action::kKill && state->count + 1 == state->at &&
         !path.empty();
}

// The same for an operation that changes what stands at `path`.
bool FailsToChange(const char* operation, const char* path) {
  if (state != nullptr && path[0] == '/' && !IsBelow(path, state->root)) {
    state->outside.push_back(std::string(operation) + " " + path);
  }
  return Fails(operation, path);
}

bool OpensForWriting(const char* mode) {
  return mode[0] != 'r' || std::string(mode).find('+') != std::string::npos;
}

std::string PathOf(const void* stream) {
  if (state == nullptr) return "";
  const auto found = state->streams.find(stream);
  return found == state->streams.end() ? "" : found->second;
}

std::string PathOf(int descriptor) {
  if (state == nullptr) return "";
  for (const auto* descriptors : {&state->descriptors, &state->of_streams}) {
    const auto found = descriptors->find(descriptor);
    if (found != descriptors->end()) return found->second;
  }
  return "";
}

// Follows what was opened below the root.
FILE* Follow(FILE* stream, const std::string& path) {
  if (state == nullptr || stream == nullptr || !IsBelow(path, state->root)) return stream;
  const int saved = errno;
  state->streams[stream] = path;
  state->of_streams[fileno(stream)] = path;
  errno = saved;
  return stream;
}

DIR* Follow(DIR* directory, const std::string& path) {
  const int saved = errno;
  if (state != nullptr && directory != nullptr && IsBelow(path, state->root)) {
    state->streams[directory] = path;
  }
  errno = saved;
  return directory;
}

int Follow(int descriptor, const std::string& path) {
  const int saved = errno;
  if (state != nullptr && descriptor >= 0 && IsBelow(path, state->root)) {
    state->descriptors[descriptor] = path;
  }
  errno = saved;
  return descriptor;
}

void Forget(const void* stream) {
  if (state != nullptr) state->streams.erase(stream);
}

void Forget(FILE* stream) {
  if (state == nullptr || state->streams.erase(stream) == 0) return;
  state->of_streams.erase(fileno(stream));
}

void Forget(int descriptor) {
  if (state != nullptr) state->descriptors.erase(descriptor);
}

// What ferror answers afterwards.
void MarkAsFailed(FILE* stream) {
  stream->_flags |= _IO_ERR_SEEN;
}

void WriteReport() {
  std::string text;
  for (const std::string& line : state->operations) text += line + "\n";
  for (const auto& [stream, path] : state->streams) text += "left " + path + "\n";
  for (const auto& [descriptor, path] : state->descriptors) text += "left " + path + "\n";
  for (const std::string& line : state->outside) text += "outside " + line + "\n";
  const std::string path = state->report;
  delete state;
  state = nullptr;  // from here on the layer's own calls pass through
  if (path.empty()) return;
  FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) std::abort();
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);
}

__attribute__((constructor)) void ArmOfEnvironment() {
  if (std::getenv("FAULT_LAYER_ROOT") != nullptr) ArmFaultLayer();
}

// Behind the program's own end, and so behind its last operation.
__attribute__((destructor)) void ReportAtTheEnd() {
  DisarmFaultLayer();
}

}  // namespace

extern "C" {

void ArmFaultLayer() {
  delete state;
  auto* armed = new State;
  armed->root = FromEnvironment("FAULT_LAYER_ROOT");
  armed->at = std::atol(FromEnvironment("FAULT_LAYER_AT").c_str());
  armed->on = FromEnvironment("FAULT_LAYER_ON");
  const std::string action = FromEnvironment("FAULT_LAYER_ACTION");
  if (action == "kill") armed->action = Action::kKill;
  if (action == "swap") armed->action = Action::kSwap;
  armed->error = std::atoi(FromEnvironment("FAULT_LAYER_ERROR").c_str());
  armed->from = FromEnvironment("FAULT_LAYER_FROM");
  armed->instead = FromEnvironment("FAULT_LAYER_INSTEAD");
  armed->report = FromEnvironment("FAULT_LAYER_REPORT");
  state = armed;
}

void DisarmFaultLayer() {
  if (state != nullptr) WriteReport();
}

// ---- streams -----------------------------------------------------------------------------------

FILE* fopen(const char* path, const char* mode) {
  REAL(fopen);
  const bool writing = OpensForWriting(mode);
  if (writing ? FailsToChange("create", path) : Fails("fopen", path)) return nullptr;
  return Follow(real(path, mode), path);
}

FILE* fopen64(const char* path, const char* mode) {
  return fopen(path, mode);
}

FILE* fdopen(int descriptor, const char* mode) {
  REAL(fdopen);
  const std::string path = PathOf(descriptor);
  if (Fails("fdopen", path)) return nullptr;
  FILE* stream = real(descriptor, mode);
  if (stream != nullptr) Forget(descriptor);  // the stream closes it
  return Follow(stream, path);
}

// A stream is closed even if its last bytes are lost.
int fclose(FILE* stream) {
  REAL(fclose);
  const bool fails = Fails("fclose", PathOf(stream));
  const int error = errno;
  Forget(stream);
  const int result = real(stream);
  if (!fails) return result;
  errno = error;
  return EOF;
}

int fflush(FILE* stream) {
  REAL(fflush);
  if (!Fails("fflush", PathOf(stream))) return real(stream);
  MarkAsFailed(stream);
  return EOF;
}

// Half of the bytes get through, also ahead of a kill. Writing nothing is no operation.
size_t fwrite(const void* data, size_t size, size_t count, FILE* stream) {
  REAL(fwrite);
  if (size * count == 0) return real(data, size, count, stream);
  if (KillsNext(PathOf(stream))) {
    real(data, 1, size * count / 2, stream);
    fflush_unlocked(stream);
  }
  if (!Fails("fwrite", PathOf(stream))) return real(data, size, count, stream);
  const int error = errno;
  const size_t half = real(data, 1, size * count / 2, stream);
  MarkAsFailed(stream);
  errno = error;
  return half / size;
}

int fputs(const char* text, FILE* stream) {
  REAL(fputs);
  if (!Fails("fputs", PathOf(stream))) return real(text, stream);
  MarkAsFailed(stream);
  return EOF;
}

size_t fread(void* data, size_t size, size_t count, FILE* stream) {
  REAL(fread);
  if (!Fails("fread", PathOf(stream))) return real(data, size, count, stream);
  MarkAsFailed(stream);
  return 0;
}

size_t __fread_chk(void* data, size_t /*room*/, size_t size, size_t count, FILE* stream) {
  return fread(data, size, count, stream);
}

char* fgets(char* text, int size, FILE* stream) {
  REAL(fgets);
  if (!Fails("fgets", PathOf(stream))) return real(text, size, stream);
  MarkAsFailed(stream);
  return nullptr;
}

char* __fgets_chk(char* text, size_t /*room*/, int size, FILE* stream) {
  return fgets(text, size, stream);
}

int __isoc99_fscanf(FILE* stream, const char* format, ...) {
  if (Fails("fscanf", PathOf(stream))) {
    MarkAsFailed(stream);
    return EOF;
  }
  va_list arguments;
  va_start(arguments, format);
  const int result = vfscanf(stream, format, arguments);
  va_end(arguments);
  return result;
}

int fseeko(FILE* stream, off_t offset, int whence) {
  REAL(fseeko);
  return Fails("fseeko", PathOf(stream)) ? -1 : real(stream, offset, whence);
}

int fseeko64(FILE* stream, off64_t offset, int whence) {
  return fseeko(stream, offset, whence);
}

off_t ftello(FILE* stream) {
  REAL(ftello);
  return Fails("ftello", PathOf(stream)) ? -1 : real(stream);
}

off64_t ftello64(FILE* stream) {
  return ftello(stream);
}

// ---- descriptors -------------------------------------------------------------------------------

int open(const char* path, int flags, ...) {
  REAL(open);
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  const char* name = (flags & O_DIRECTORY) != 0 ? "folder" : "open";
  const bool writing = (flags & O_ACCMODE) != O_RDONLY;
  if (writing ? FailsToChange(name, path) : Fails(name, path)) return -1;
  return Follow(real(path, flags, mode), path);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return open(path, flags, mode);
}

int __open_2(const char* path, int flags) {
  return open(path, flags);
}

int mkstemp(char* path) {
  REAL(mkstemp);
  if (FailsToChange("mkstemp", path)) return -1;
  const int descriptor = real(path);
  return Follow(descriptor, path);
}

int mkstemp64(char* path) {
  return mkstemp(path);
}

int dup(int descriptor) {
  REAL(dup);
  const std::string path = PathOf(descriptor);
  return Fails("dup", path) ? -1 : Follow(real(descriptor), path);
}

int close(int descriptor) {
  REAL(close);
  const bool fails = Fails("close", PathOf(descriptor));
  const int error = errno;
  Forget(descriptor);
  const int result = real(descriptor);
  if (!fails) return result;
  errno = error;
  return -1;
}

int ftruncate(int descriptor, off_t length) noexcept {
  REAL(ftruncate);
  return Fails("ftruncate", PathOf(descriptor)) ? -1 : real(descriptor, length);
}

// Only the archive library asks for it, to share blocks between two files. It is never granted, so
// that the operations are the same on every kind of disk.
int ioctl(int descriptor, unsigned long request, ...) noexcept {
  REAL(ioctl);
  va_list arguments;
  va_start(arguments, request);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  const std::string path = PathOf(descriptor);
  if (Fails("ioctl", path)) return -1;
  if (path.empty()) return real(descriptor, request, argument);
  errno = EOPNOTSUPP;
  return -1;
}

int fstat(int descriptor, struct stat* status) noexcept {
  REAL(fstat);
  return Fails("fstat", PathOf(descriptor)) ? -1 : real(descriptor, status);
}

// ---- folders and names -------------------------------------------------------------------------

DIR* opendir(const char* path) {
  REAL(opendir);
  return Fails("opendir", path) ? nullptr : Follow(real(path), path);
}

dirent* readdir(DIR* directory) {
  REAL(readdir);
  return Fails("readdir", PathOf(directory)) ? nullptr : real(directory);
}

int closedir(DIR* directory) {
  REAL(closedir);
  const bool fails = Fails("closedir", PathOf(directory));
  const int error = errno;
  Forget(directory);
  const int result = real(directory);
  if (!fails) return result;
  errno = error;
  return -1;
}

int stat(const char* path, struct stat* status) noexcept {
  using Function = int (*)(const char*, struct stat*);
  static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "stat"));
  return Fails("stat", path) ? -1 : real(path, status);
}

int mkdir(const char* path, mode_t mode) noexcept {
  REAL(mkdir);
  return FailsToChange("mkdir", path) ? -1 : real(path, mode);
}

int unlink(const char* path) noexcept {
  REAL(unlink);
  return FailsToChange("unlink", path) ? -1 : real(path);
}

int rmdir(const char* path) noexcept {
  REAL(rmdir);
  return FailsToChange("rmdir", path) ? -1 : real(path);
}

int remove(const char* path) noexcept {
  REAL(remove);
  return FailsToChange("remove", path) ? -1 : real(path);
}

int rename(const char* from, const char* to) noexcept {
  REAL(rename);
  if (state != nullptr && !IsBelow(to, state->root)) {
    state->outside.push_back(std::string("rename ") + to);
  }
  return FailsToChange("rename", from) ? -1 : real(from, to);
}

int chmod(const char* path, mode_t mode) noexcept {
  REAL(chmod);
  return FailsToChange("chmod", path) ? -1 : real(path, mode);
}

}  // extern "C"
