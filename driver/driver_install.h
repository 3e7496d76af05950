// Installs the staged INF files that the survey found missing, and brings devices onto the driver.
// The buttons of the driver page that do something to the system are bound to this. Works on the
// tables of driver_survey.h; never removes a driver, and deletes nothing itself.
#pragma once

class Fl_Widget;

// The callback of Next while an install is due. Installs what is missing and goes one page forward;
// after a failure the page stays with the error text, and a further click tries again.
void driver_install_callback(Fl_Widget*, void*);

// The callback of "Update Driver": runs the devices' part again and shows how many it served.
void driver_update_callback(Fl_Widget*, void*);

// The callback of "Uninstall Driver", which is never shown: there is no uninstall.
void driver_uninstall_callback(Fl_Widget*, void*);

// Registers every staged file without an installed name with the system, in row order, and updates
// the devices of each. 0 on success; -1 with the error text set at the first file that the system
// refuses. Files before it are installed and keep their names, so the next try begins with the
// refused one. That no device could be served is no failure.
int install_missing_infs();

// Updates the devices of every staged file that has an installed name; returns the count of
// update_devices_for_inf over all of them.
int update_installed_infs();
