// What happens to an entry of the payload, and where it lands: the ordered list of literal tests
// that joins the flat payload to the host's layout. The answer is a value. Nothing here touches the
// disk, the store or a widget, so that the packager foretells with it what DisposeEntry will do.
#pragma once

#include <cstddef>
#include <cstdint>

// The entry asked about.
struct DispositionEntry {
  const char* name;
  std::uint32_t index;  // its place in the table
  std::uint32_t size;   // bytes
  // At least the first kRemovalSize of them. Read only when the size is kRemovalSize and the name
  // begins with kCoresFolder; may be null for all other entries.
  const unsigned char* bytes;
};

// What a decision asks besides. The functions get `user` back and are asked only when a rule needs
// the answer, each at most once for a decision.
struct DispositionContext {
  const char* release;  // the selected release's name, at most 63 characters
  const void* user;
  // The value of a key of the release's locations.txt, or null. Need not outlive the decision.
  const char* (*location)(const void* user, const char* key);
  // The lowest index below `end` of an entry of exactly this name, or -1.
  int (*find_entry_below)(const void* user, const char* name, std::uint32_t end);
  // Whether the library of this name, a folder of libraries/, is to be installed.
  bool (*library_selected)(const void* user, const char* library);
};

enum class DispositionAction {
  kPassOver,     // nothing to do
  kWriteFile,    // write `file` below the folder `place`
  kWriteObject,  // write `file` as an object of the archive `place`
  kRemove,       // remove `file` below the folder `place`, if it is there
  kFail,         // the run has to stop
};

inline constexpr std::size_t kPlaceSize = 520;

struct Disposition {
  std::size_t rule;  // the index of the rule that decided
  DispositionAction action;
  bool antivirus_hint;     // of a kind that virus scanners are known to interfere with
  const char* key;         // the location key that `place` comes from; null when it comes from none
  char place[kPlaceSize];  // relative to the host folder; a folder's ends in "/"
  const char* file;        // points into the entry's name, without a terminator of its own
  std::size_t file_length;
  std::uint32_t source;  // the index of the entry that gives the bytes: for an alias its target
  const char* error;     // with kFail: the words, or null when the failure has none
};

// Applies the rules in their order; the first whose test holds decides. A rule whose location key
// the release doesn't define fails without words.
Disposition DecideEntry(const DispositionEntry& entry, const DispositionContext& context);

// The rules in the order of their tests: their number, and what each is about, for people. The last
// has no test.
std::size_t DispositionRuleCount();
const char* DispositionRuleTitle(std::size_t rule);
