// The two writers that put a payload entry into the host, as a plain file or as an object of one of
// the host's jar archives, the folder operations with their containment rule, and the one open
// archive. Makes folders below the base folder that the caller gives, and nowhere else by its text;
// links that stand there are followed. What was written stays, whatever fails later.
//
// A result of 1 is written, 0 (folders) is there, negative is a failure with its words in the
// shared error text (engine/install_error.h), but for the one case named at MakeDirectoryChain.
// Overlong paths are cut to 259 characters without a word.
#pragma once

#include <cstddef>
#include <cstdint>

struct zip;

// The archive open now: at most one, and null while there is none. The path is the one it was
// opened with and is meaningful only while the handle is set. Set by WriteEntryToArchive, cleared
// by CloseOpenArchive alone.
struct OpenArchiveState {
  zip* handle;
  char path[260];
};
extern OpenArchiveState OpenArchive;

// Creates or replaces the file `base` + `subfolder` + `name` with the data of the entry at `index`,
// after the open archive, if any, is closed and the missing folders are made. `base` and
// `subfolder` end in a separator; `subfolder` may be empty; folders are split at '/' in `name`
// only. A file that failed half-way stays as it is.
int WriteEntryToFile(const char* base, const char* subfolder, const char* name,
                     std::uint32_t index);

// Records the entry at `index` as the object named `object` of the existing archive `base` +
// `archive`: a present object of exactly that name is replaced, otherwise it is added. The archive
// stays open for the next object and reaches the disk only when it is closed; until then it refers
// to the store's memory.
int WriteEntryToArchive(const char* base, const char* object, std::uint32_t index,
                        const char* archive);

// Writes the open archive's changes to disk and closes it. True when none was open or it closed
// well. On false the changes are dropped and the archive on disk is as it was. A rewritten archive
// has the permissions it had, but for set-id bits, and its owner and group where the system lets
// us.
bool CloseOpenArchive();

// Makes sure that the folder `path` exists, making it and its parents below `base` where missing.
// 0 when it exists at the end, otherwise -1.
int EnsureDirectory(const char* path, const char* base);

// Makes each missing level of `path` behind `base`, one at each '/'. The containment rule: a path
// that doesn't begin with the whole text of `base` is refused. 0 or -1; without words in the one
// case that a level was made and still isn't there. A `path` without a trailing '/' is refused
// unless it exists, as its last level is made by nobody.
int MakeDirectoryChain(const char* path, const char* base);
