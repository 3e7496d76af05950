#include "wizard/folder_browser.h"

#include <FL/Fl.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Choice.H>
#include <FL/Fl_File_Browser.H>
#include <FL/filename.H>

#include <algorithm>
#include <cstring>

#include "engine/host_preferences.h"
#include "platform/files.h"
#include "platform/text.h"
#include "recognition/identify_arduino.h"
#include "store/host_selection.h"
#include "wizard/folder_page.h"

namespace {

constexpr char kAllDrives[] = "[All Drives]";

bool IsSeparator(char c) {
  return c == '/' || c == '\\';
}

void CopyFolder(char (&to)[kFolderSize], const char* from) {
  FormatBounded(to, kFolderSize, "%s", from);
}

bool IsHiddenEntry(const char* text) {
  if (text[0] != '.' && text[0] != '$') return false;
  return std::strcmp(text, "../") != 0 && std::strncmp(text, ".arduino-", 9) != 0;
}

// The menu would take these as a shortcut, a submenu path, a divider and an escape.
bool NeedsEscape(char c) {
  return c == '&' || c == '/' || c == '_' || c == '\\';
}

// The text that, added to a menu, gives one item of exactly the text `path`.
void EscapeForMenu(const char* path, char (&label)[2 * kFolderSize]) {
  char* to = label;
  for (; *path != '\0'; ++path) {
    if (NeedsEscape(*path)) *to++ = '\\';
    *to++ = *path;
  }
  *to = '\0';
}

void EnterHostFolder() {
  Fl::event_clicks(-1);  // a further click is no new double click
  CopyFolder(BrowsedFolder, HostFolder);
  load_folder_list();
  FolderList->redraw();
  rebuild_path_choice();
}

}  // namespace

void folder_list_callback(Fl_Widget*, void*) {
  const char* entry = FolderList->text(FolderList->value());
  if (entry == nullptr) return;
  const int clicks = Fl::event_clicks();
  CopyFolder(HostFolder, BrowsedFolder);
  if (std::strcmp(entry, "../") == 0) {
    strip_last_path_component(HostFolder);
  } else {
    append_bounded(HostFolder, sizeof HostFolder, entry);
  }
  if (clicks > 0) EnterHostFolder();  // `entry` is gone then
  recognise_host_folder();
  if (HostVersionNumber != 0) FindPreferences(HostFolder, HostVersionNumber);  // result dropped
}

void path_choice_callback(Fl_Widget*, void*) {
  std::memset(BrowsedFolder, 0, sizeof BrowsedFolder);
  const char* picked = PathChoice->text();
  if (picked != nullptr && std::strcmp(picked, kAllDrives) != 0) CopyFolder(BrowsedFolder, picked);
  CopyFolder(HostFolder, BrowsedFolder);
  load_folder_list();
  recognise_host_folder();
}

void load_folder_list() {
  FolderList->load(BrowsedFolder, fl_casenumericsort);
  filter_folder_list();
}

void filter_folder_list() {
  int line = 1;
  while (line <= FolderList->size()) {
    const char* text = FolderList->text(line);
    if (text != nullptr && IsHiddenEntry(text)) {
      FolderList->remove(line);  // the next one moves up to this number
    } else {
      ++line;
    }
  }
}

void rebuild_path_choice() {
  PathChoice->clear();
  char path[kFolderSize];
  CopyFolder(path, BrowsedFolder);
  for (;;) {
    char label[2 * kFolderSize];
    EscapeForMenu(path, label);
    PathChoice->add(label[0] == '\0' ? kAllDrives : label, 0, path_choice_callback, nullptr, 0);
    if (path[0] == '\0') break;
    strip_last_path_component(path);
  }
  PathChoice->value(0);
}

void recognise_host_folder() {
  // The window library lists the folders. One that would be read as another folder's path must
  // not be judged, since the install would go into that other folder.
  HostVersionNumber =
      CanBeGiven(HostFolder)
          ? IdentifyArduino(HostFolder)
          : RefuseFolder(HostFolder, "  A folder with a backslash in its name can't be used\n");
  if (HostVersionNumber != 0) {
    FolderNextButton->activate();
  } else {
    FolderNextButton->deactivate();
  }
}

void strip_last_path_component(char* path) {
  std::size_t length = std::strlen(path);
  if (length > 0 && IsSeparator(path[length - 1])) --length;
  while (length > 0 && !IsSeparator(path[length - 1])) --length;
  path[length] = '\0';
}

void append_bounded(char* text, std::size_t size, const char* source) {
  if (text == nullptr || source == nullptr) return;
  const std::size_t length = std::strlen(text);
  if (length + 1 >= size) return;
  const std::size_t count = std::min(std::strlen(source), size - 1 - length);
  std::memcpy(text + length, source, count);
  text[length + count] = '\0';
}
