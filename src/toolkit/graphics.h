// Opening the window and setting the OpenGL state that the toolkit draws with.
#pragma once

// Opens the 1024 x 768 window, sets the 2D projection of logical units and loads the font. When
// the window cannot be opened it says why on stderr, in one line, and leaves graphicsOpened false.
void setupGraphics();
bool graphicsOpened();

// Starts the image library and its OpenGL renderer, then takes back the state that the renderer
// changes on starting (it turns texturing on), so that untextured drawing stays untextured.
void startImageLibrary();
