// The check log: the running words of every test of a folder, which the help window shows. Its
// text lives in LogBuffer and has no limit of its own.
#pragma once

class Fl_Text_Buffer;

// Null until wizard start-up creates it, and for the whole run from the command line; both calls
// then do nothing. Never freed.
extern Fl_Text_Buffer* LogBuffer;

// Appends the formatted text, cut to 4,095 characters. Adds no line end: some lines are begun by
// one call and finished by a later one.
void LogPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Empties the log.
void LogClear();
