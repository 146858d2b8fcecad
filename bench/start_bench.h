// The start of the program on the sample campaign up to its first frame, run in a process of its own.
#pragma once

// The arguments with which the benchmark program starts as that process: the application, or only
// its window with nothing in it (the floor that the libraries and the window system set).
inline constexpr const char* firstFrameArgument = "--first-frame";
inline constexpr const char* emptyFrameArgument = "--first-empty-frame";
// Starts the application in the campaign directory (or only opens the window, when empty), draws one
// frame, and when it is on the screen writes the milliseconds that this took since main was entered
// to standard output; returns the exit status.
int runToFirstFrame(bool empty);
