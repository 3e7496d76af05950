// The connection to the display, for tests that share one server with many others.
#pragma once

// Connects FLTK to the display of the environment, trying for ten seconds: a server starts anew
// whenever its last client leaves, and refuses those that come meanwhile. Once connected, the
// process keeps it from doing so. Throws when there is no display.
void OpenDisplay();
