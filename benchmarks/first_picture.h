// Ends a program with status 0 as soon as its first window has been drawn and the display server
// has done the drawing.
#pragma once

// To be called before the first window is made.
void ExitAfterFirstPicture();
