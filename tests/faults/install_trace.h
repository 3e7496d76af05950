// What an install does to the file system, operation by operation, and what must come of it when
// one of them fails or the process ends there. It is made from the layer's report of an undisturbed
// run: each operation gets the role it has for the writers, and the role says the outcome. So the
// words that a test expects come from the design's own steps and not from what a run has shown.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "tests/faults/fault_run.h"

using Files = std::map<std::string, std::string>;  // as of ReadInstall

enum class Role {
  kOpenHost,      // the first look at the folder
  kOtherRelease,  // recognition of a release that doesn't match in any case
  kRecognition,   // proof of the release that matches
  kHarmless,      // its result decides nothing
  kFirstLook,     // at the folder that is needed
  kBaseLook,      // at the host folder, when the needed one isn't there
  kPresentLevel,  // look at a level that is there
  kAbsentLevel,   // look at a level that isn't
  kMakeLevel,     // making it
  kMadeLevel,     // look at what was made
  kLastLook,      // at the needed folder, all levels made
  kCreate,        // opening a file for writing
  kWrite,
  kFlush,
  kClose,
  kFindRetired,  // opening a file that is to be removed
  kRemoveRetired,
  kOpenArchive,
  kCommitArchive,
  kReplaceArchive,  // the rename that ends the commit
  kLeftover,        // removing the archive library's first temporary file
  kLastSteps,       // preferences and old libraries, which report nothing
};

struct Outcome {
  enum class End { kDone, kFailed, kRefused };
  End end;
  std::string words;  // the error text (kFailed), or all of the error stream (kRefused)
};

class InstallTrace {
 public:
  // `host` is the host folder's path as in the operations, without a separator at its end;
  // `host_text` is the folder as the program's words begin with it, with its separator. A run
  // without recognition begins with the first entry.
  InstallTrace(std::vector<Operation> operations, std::string host, std::string host_text,
               bool with_recognition);

  std::size_t size() const { return operations_.size(); }

  // The numbers of all operations, and of the first of each kind: of a role and a name, on the
  // host's own files and on temporary ones.
  std::vector<long> All() const;
  std::vector<long> Representatives() const;

  // Operations are counted from 1.
  const Operation& At(long n) const { return operations_[static_cast<std::size_t>(n) - 1]; }
  Role RoleAt(long n) const { return roles_[static_cast<std::size_t>(n) - 1]; }

  // What the failure of operation n leads to.
  Outcome FailureAt(long n) const;

  // Whether operation n belongs to an entry that a virus scanner may have an eye on.
  bool HintAt(long n) const;

  // Compares the files after an end at operation n (by failure or a kill) with what must stand
  // there: complete what was finished before, as before what hadn't been begun, and a beginning of
  // the one file in between; an archive is the old one or the new one. Empty when all is right,
  // otherwise the first difference.
  std::string CompareEnd(long n, const Files& before, const Files& complete,
                         const Files& after) const;

 private:
  bool IsLookBeforeOpening(std::size_t i) const;
  void GiveRoles(bool with_recognition);
  std::size_t GiveRecognitionRoles();
  std::size_t GiveArchiveRoles(std::size_t i);
  void GiveFolderRole(std::size_t i);
  void GiveFileRole(std::size_t i);
  std::string Rest(long n) const;  // the path below the host folder

  std::vector<Operation> operations_;
  std::vector<Role> roles_;
  std::string host_;
  std::string host_text_;
  std::string wanted_;     // the folder whose levels are being made; empty when none is
  std::size_t level_ = 0;  // where its next level begins
  bool base_seen_ = false;
};

// Takes the archive library's temporary files out of the tree and names them.
std::vector<std::string> TakeTemporaries(Files* files);

// Empty when the trees are equal, otherwise the first difference.
std::string Difference(const Files& expected, const Files& found);
