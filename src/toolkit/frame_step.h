// The frame loop's one turn and the two input callbacks that feed it.
#pragma once

class Window;

// Turns the input gathered during the last swap into calls of the windows' operations, swaps,
// and redraws the tree, the balloon and the ghost of a dragged window. False when the program
// should end: the window was closed, or the root's afterDraw gave false.
bool frameStep(Window* root);

// Registered with the window library; they only record input for the next frame.
void keyCallback(int key, int action);
void mousePosCallback(int x, int y);
