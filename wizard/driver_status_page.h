// The second page: whether the serial driver has to be installed. Only its widgets are built here;
// their pointers are in driver/driver_page.h, what the page says and which of its buttons work is
// decided by driver/driver_survey.h.
#pragma once

// Adds the page to the current group and fills in the pointers, DriverNextPageCallback included.
void BuildDriverPage();
