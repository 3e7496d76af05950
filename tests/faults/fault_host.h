// The place where an install is disturbed: a folder with the host and things beside it that no
// install may touch.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/install_trace.h"
#include "tests/support/temp_dir.h"

// The seven errors that operations fail with.
struct NamedError {
  const char* name;
  int number;
};
extern const std::vector<NamedError> kErrors;

class FaultHost {
 public:
  // A host that nothing was installed into, or one with an older package: a marker, an older board
  // file, a file that is to be replaced and one that is to be removed.
  enum class Kind { kFresh, kWithOlderPackage };
  explicit FaultHost(Kind kind);

  // Makes the host, and all beside it, as it was at first.
  void Reset() const;

  const std::string& root() const { return dir_.path(); }
  std::string host() const { return dir_ / "host"; }
  std::string argument() const { return "--dir=" + host(); }
  // The host as the program's words begin with it.
  std::string text() const { return host() + "\\"; }

  // The files of the host folder.
  Files Read() const;
  // Empty when everything beside the host stands as it was, otherwise the first difference.
  std::string CompareBeside() const;

 private:
  Kind kind_;
  TempDir dir_;
};

// Every file below the folder, and in the place of each of the two jars that an install changes, if
// it is a sound archive, its members: "lib/pde.jar!/member".
Files ReadInstall(const std::string& folder);
