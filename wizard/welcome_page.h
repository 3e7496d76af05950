// The first page: what the installer is and which releases it knows.
#pragma once

class Fl_Group;

extern Fl_Group* WelcomePage;

// Adds the page to the current group. Reads two pictures and the list of releases from the store.
void BuildWelcomePage();
