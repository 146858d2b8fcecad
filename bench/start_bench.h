// The start of the program on the sample campaign up to its first frame, run in a process of its own.
#pragma once

// The argument with which the benchmark program starts as that process.
inline constexpr const char* firstFrameArgument = "--first-frame";
// Starts the application in the campaign directory, draws one frame, and when it is on the screen
// writes the milliseconds that this took since main was entered to standard output; returns the
// exit status.
int runToFirstFrame();
