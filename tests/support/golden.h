// Golden pictures: a part of the frame read back, kept as a PNG file, and compared with a fresh frame
// with an allowance for the seams where faces of one plane meet.
#pragma once

#include <string>
#include <vector>

#include "support/ui_driver.h"

namespace ui {

struct Picture {
    int width = 0, height = 0;
    std::vector<unsigned char> rgb; // rows from the top
    Rgb at(int x, int y) const;
};

// The pixels of a rectangle of the frame last drawn, in pixels from the top left corner.
Picture readFrame(int left, int top, int width, int height);
bool writePicture(const Picture& picture, const std::string& path);
// An empty picture when the file cannot be read.
Picture readPicture(const std::string& path);

// How a picture departs from its golden one. A seam is where two faces of one plane meet: the
// neighbourhood of a line, which the two pictures may draw a pixel apart.
struct Departure {
    int differing = 0;    // pixels that differ at all
    int offSeam = 0;      // of those, pixels farther than a pixel from any line of either picture
    int worstOffSeam = 0; // the largest difference of one channel off the seams
};
// Where gives the departures a picture: the seen one darkened, with differing pixels in yellow on
// the seams and in magenta off them.
Departure compare(const Picture& golden, const Picture& seen, Picture* where = nullptr);

} // namespace ui
