// Replacements for functions of the system and of libzip, for failures that nothing real brings
// about at will. Each works as the real one until told otherwise. Linked with --wrap, so they catch
// the calls of all code that is linked statically, the test's own among it.
#pragma once

enum class Call {
  kFclose,
  kFflush,
  kFread,
  kFwrite,
  kMalloc,
  kMkdir,        // fails with EACCES
  kMkdirInVain,  // answers success and makes nothing
  kZipAdd,
  kZipClosePrivately,  // succeeds, and leaves a file with nobody's rights but the owner's
  kZipCloseTooLate,    // the same, but answers that it failed
  kZipOpen,            // only counted
  kZipReplace,
  kZipSourceBuffer,
  kZipSourceFree,  // only counted
};

// Makes every such call fail, after as much of its work as a real failure would have done, for the
// life of the object.
class ScopedFailure {
 public:
  explicit ScopedFailure(Call call);
  ~ScopedFailure();
  ScopedFailure(const ScopedFailure&) = delete;
  ScopedFailure& operator=(const ScopedFailure&) = delete;
};

// How often mkdir, zip_open or zip_source_free was called since the object was made, by our own
// code.
class CallCount {
 public:
  explicit CallCount(Call call);
  int Get() const;

 private:
  Call call_;
  int before_;
};
