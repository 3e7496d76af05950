// The one value of the system's driver search policy that the program changes.
#pragma once

// Moves "SearchOrderConfig" of the driver search policy from 1 to 2, and leaves every other value,
// and a value of another form, alone. The old value is neither saved nor put back: the change
// outlives the program. 1 when the value was read and, where due, written; 0 on any failure. The
// change is a courtesy, so no caller looks at the result.
int relax_driver_search_order();
