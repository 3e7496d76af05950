// The folder page's logic: a small browser of folders that recognises every selection at once. It
// works on BrowsedFolder and HostFolder (store/host_selection.h), on HostVersionNumber, which the
// Next button follows, and on the widgets of wizard/folder_page.h. A folder that can't be read is
// an empty list, one that is no Arduino leaves Next dead; the reasons are in the check log alone.
//
// On this page BrowsedFolder ends in a separator, or is empty for the list of drives.
#pragma once

#include <cstddef>

class Fl_Widget;

// The callback of FolderList, for every selection. A single click makes the clicked folder
// HostFolder without entering it; a double click, which first arrives as a single one, also enters
// it. Without a selected line nothing changes.
void folder_list_callback(Fl_Widget*, void*);

// The callback of each item of PathChoice: browses the picked folder and makes it HostFolder. It
// leaves PathChoice as it is, so the deeper folders that the user came from stay on offer, and
// doesn't look for the preferences; both differ from the list on purpose.
void path_choice_callback(Fl_Widget*, void*);

// Fills FolderList from BrowsedFolder, sorted and filtered.
void load_folder_list();

// Removes hidden entries from FolderList: those that begin with '.' or '$', but for "../" and the
// folders that a Linux download of Arduino leaves (".arduino-...").
void filter_folder_list();

// Refills PathChoice with BrowsedFolder, each of its parents, nearest first, and "[All Drives]".
void rebuild_path_choice();

// Judges HostFolder: sets HostVersionNumber, and FolderNextButton active or not by it. A folder
// that the calls of platform/files.h would take for another one is refused.
void recognise_host_folder();

// Cuts the last part of `path`, so that it ends in the separator before that part or is empty.
void strip_last_path_component(char* path);

// Appends to `text` (`size` bytes), cut to fit, terminator included. Nothing happens when either
// text is missing or no room is left.
void append_bounded(char* text, std::size_t size, const char* source);
