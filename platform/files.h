// The file and folder operations on which all logic stands. A path is a narrow text, on Windows
// always in UTF-8, that may separate its parts with '/' and '\' alike, and may hold several in a
// row, on every platform; the texts themselves are never rewritten, only what the system is asked.
// A name that a listing gave is no such path: what bears it is reached through the folder's handle.
//
// Results: a pointer or null, true or false. Where the system gives a reason, it is in errno.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

// What StatPath tells of a file or folder.
struct PathStatus {
  std::uint64_t size;  // bytes; of no meaning for a folder
  bool is_directory;
};

// A folder opened for listing.
struct DirectoryHandle;

// Opens a file with the modes of fopen. A folder is refused in every mode, also "r", with EACCES,
// and off Windows so is whatever else is no plain file (a pipe, a socket, a device): opening it
// might wait for ever, or do something. Null on failure; the caller closes the stream with fclose.
std::FILE* OpenFile(const char* path, const char* mode);

// True when a folder stands at `path` and can be opened. Nothing stays open.
bool DirectoryExists(const char* path);

// Opens a folder for listing; null when there is none or it can't be read. The caller owns the
// handle until CloseDirectory.
DirectoryHandle* OpenDirectory(const char* path);

// The next name in the folder, "." and ".." among them, in the system's order; null at the end.
// The text holds until the next call on the same handle.
const char* NextDirectoryEntry(DirectoryHandle* directory);

void CloseDirectory(DirectoryHandle* directory);

// The four calls below do to what stands in an opened folder what their namesakes for paths do.
// `name` is one that NextDirectoryEntry gave, or the beginning of one, and is taken as it stands:
// off Windows a backslash is a letter of a name like any other, and separates nothing.
bool StatListed(const DirectoryHandle* directory, const char* name, PathStatus* status);
DirectoryHandle* OpenListedDirectory(const DirectoryHandle* directory, const char* name);
bool RemoveListedFile(const DirectoryHandle* directory, const char* name);
bool RemoveListedDirectory(const DirectoryHandle* directory, const char* name);

// Makes one folder; its parent must exist. False on failure, also when it exists already.
bool MakeDirectory(const char* path);

// Removes a file; a folder is refused.
bool RemoveFile(const char* path);

// Removes a folder, which must be empty.
bool RemoveEmptyDirectory(const char* path);

// Follows links. False when nothing stands at `path` or it can't be looked at.
bool StatPath(const char* path, PathStatus* status);

// Whether `path`, put together from listed names, reaches what it names when it is given to the
// calls above. Off Windows it doesn't when a backslash is a letter of one of them.
bool CanBeGiven(const char* path);

// Who may use a file, for a file that a library replaces by one of its own making.
struct FileAccess {
  bool known;
  std::uint64_t device, number;  // which file was looked at
  std::uint32_t permissions;     // with the set-id bits
  std::uint32_t owner, group;
};

// What StatPath would look at. Not known when that fails, and never on Windows, where libzip gives
// the new file the old one's access list.
FileAccess AccessOf(const char* path);

// Gives another file that has come to stand at `path` since the permission bits that `access`
// tells, without the set-id bits, and the owner and group as far as the system allows. The file
// that was looked at is left as it is, and so is what is no plain file of one name: nobody may lead
// this to a file elsewhere. Nothing is reported.
void RestoreAccess(const char* path, const FileAccess& access);

// Writes `path` to `buffer` in the form that a library which opens files by itself (libzip) wants:
// on Windows in UTF-8, elsewhere with '/' as the only separator. False when it doesn't fit into
// `size` bytes. libzip looks by itself whether a plain file stands there.
bool LibraryPath(const char* path, char* buffer, std::size_t size);

// A buffer of this size holds every path that the system can open.
inline constexpr std::size_t kLibraryPathSize = 4096;
