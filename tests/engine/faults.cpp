#include "tests/engine/faults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "engine/writers.h"
#include "tests/support/temp_dir.h"

namespace {

std::optional<Call> failing;
std::array<int, 16> counts;

int& CountOf(Call call) {
  return counts.at(static_cast<std::size_t>(call));
}

bool Fails(Call call) {
  ++CountOf(call);
  return failing == call;
}

bool replaced;

void ReplaceByPrivateCopy(const std::string& path) {
  const std::string content = ReadFile(path);
  std::string copy = path + ".XXXXXX";
  close(mkstemp(copy.data()));
  WriteFile(copy, content);
  std::filesystem::rename(copy, path);
}

}  // namespace

ScopedFailure::ScopedFailure(Call call) {
  replaced = false;
  failing = call;
}

ScopedFailure::~ScopedFailure() {
  failing.reset();
}

CallCount::CallCount(Call call) : call_(call), before_(CountOf(call)) {}

int CallCount::Get() const {
  return CountOf(call_) - before_;
}

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_fclose(FILE* file);
int __real_fflush(FILE* file);
std::size_t __real_fread(void* data, std::size_t size, std::size_t count, FILE* file);
std::size_t __real_fwrite(const void* data, std::size_t size, std::size_t count, FILE* file);
void* __real_malloc(std::size_t size);
int __real_mkdir(const char* path, mode_t mode);
zip_int64_t __real_zip_add(zip_t* archive, const char* name, zip_source_t* source);
int __real_zip_close(zip_t* archive);
void __real_zip_source_free(zip_source_t* source);
zip_t* __real_zip_open(const char* path, int flags, int* error);
int __real_zip_replace(zip_t* archive, zip_uint64_t index, zip_source_t* source);
zip_source_t* __real_zip_source_buffer(zip_t* archive, const void* data, zip_uint64_t size,
                                       int free_it);

// A stream is closed even if its last bytes are lost.
int __wrap_fclose(FILE* file) {
  const int result = __real_fclose(file);
  return Fails(Call::kFclose) ? EOF : result;
}

int __wrap_fflush(FILE* file) {
  return Fails(Call::kFflush) ? EOF : __real_fflush(file);
}

std::size_t __wrap_fread(void* data, std::size_t size, std::size_t count, FILE* file) {
  const std::size_t result = __real_fread(data, size, count, file);
  return Fails(Call::kFread) && result > 0 ? result - 1 : result;
}

std::size_t __wrap_fwrite(const void* data, std::size_t size, std::size_t count, FILE* file) {
  return __real_fwrite(data, size, Fails(Call::kFwrite) ? count / 2 : count, file);
}

void* __wrap_malloc(std::size_t size) {
  return Fails(Call::kMalloc) ? nullptr : __real_malloc(size);
}

int __wrap_mkdir(const char* path, mode_t mode) {
  if (Fails(Call::kMkdirInVain)) return 0;
  if (!Fails(Call::kMkdir)) return __real_mkdir(path, mode);
  errno = EACCES;
  return -1;
}

zip_int64_t __wrap_zip_add(zip_t* archive, const char* name, zip_source_t* source) {
  return Fails(Call::kZipAdd) ? -1 : __real_zip_add(archive, name, source);
}

void __wrap_zip_source_free(zip_source_t* source) {
  Fails(Call::kZipSourceFree);
  __real_zip_source_free(source);
}

// As on a file system that shares blocks, where the library makes the new file with mkstemp.
int __wrap_zip_close(zip_t* archive) {
  const bool privately = Fails(Call::kZipClosePrivately);
  const bool too_late = Fails(Call::kZipCloseTooLate);
  if (!privately && !too_late) return __real_zip_close(archive);
  const std::string path = OpenArchive.path;
  const int old_file = open(path.c_str(), O_RDONLY);  // or the copy might get its inode
  if (too_late && !std::exchange(replaced, true)) {
    ReplaceByPrivateCopy(path);
    close(old_file);
    return -1;
  }
  const int result = __real_zip_close(archive);
  if (privately) ReplaceByPrivateCopy(path);
  close(old_file);
  return result;
}

zip_t* __wrap_zip_open(const char* path, int flags, int* error) {
  Fails(Call::kZipOpen);
  return __real_zip_open(path, flags, error);
}

int __wrap_zip_replace(zip_t* archive, zip_uint64_t index, zip_source_t* source) {
  return Fails(Call::kZipReplace) ? -1 : __real_zip_replace(archive, index, source);
}

zip_source_t* __wrap_zip_source_buffer(zip_t* archive, const void* data, zip_uint64_t size,
                                       int free_it) {
  return Fails(Call::kZipSourceBuffer) ? nullptr
                                       : __real_zip_source_buffer(archive, data, size, free_it);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
