// Finds out whether the user has to install the serial driver, and brings the driver page into line
// with the answer: the system's own driver serves the boards, the driver that the payload carries
// is installed already, or it needs installing. Reads INF files, writes the payload's driver files
// to the temporary folder, and changes one value of the driver search policy. Installs nothing:
// that is driver_install.h.
//
// Every failure counts as a negative answer; nothing here sets an error text of its own. Texts and
// table rows stay as long as the process, and no flag is ever cleared: the first run's answer
// stands, so a driver that is installed from elsewhere meanwhile isn't noticed.
#pragma once

#include <FL/Fl_Widget.H>

// Rows of the two tables below. Staging stops at the 250th.
inline constexpr int kStagedInfRows = 256;

// 1 once the slow part of the survey has run; it runs once per process. Set by driver_survey.
extern int SurveyDone;

// 1 when no install is due, because a driver was found or has been installed. Set by driver_survey
// and by driver_install_callback.
extern int DriverReady;

// 1 when the system's own usbser.inf passed the test. Set by driver_survey.
extern int SystemDriverFound;

// How many rows of the two tables are valid. Set by stage_driver_files.
extern int StagedInfCount;

// The full path of each INF file in the temporary folder. Filled by stage_driver_files.
extern char* StagedInfPaths[kStagedInfRows];

// For each staged file, the name of the installed INF file that is the same driver, or null while
// it is due for install. Only the presence is ever looked at. Filled by count_missing_infs and by
// install_missing_infs.
extern char* InstalledInfNames[kStagedInfRows];

// The timeout callback that runs shortly after each arrival at the driver page, from either side.
// The first run may take many minutes, during which the window doesn't answer; the page's opening
// text says so.
void driver_survey(void*);

// The callback of "Skip Driver Install": frees the three navigation buttons and goes one page
// forward. DriverReady stays as it is, so a user who returns is told of the due install again.
void driver_skip_callback(Fl_Widget*, void*);

// The steps of the survey, in the order they run.

// 1 when the system's own driver serves the boards, 0 otherwise. Rests on the contents of the
// system's usbser.inf alone; no version number of the system is read anywhere.
int system_driver_present();

// Writes the payload's .inf and .cat files to the temporary folder and fills StagedInfPaths. A file
// that can't be written is left out. Does nothing once a row is there.
void stage_driver_files();

// Fills InstalledInfNames and returns the number of staged files that aren't installed.
int count_missing_infs();

// Back to the state at program start, with all texts of the tables freed, for tests.
void ResetDriverSurvey();
