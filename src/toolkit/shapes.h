// The toolkit's one rectangle: corners top left, bottom left, bottom right, top right, which is
// counter-clockwise on the screen and so survives face culling. In the present colour.
#pragma once

void fillRect(float width, float height);
void outlineRect(float width, float height);
