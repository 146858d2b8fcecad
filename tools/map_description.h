// The readable description of a map that make_map turns into a map file: a size, a legend of
// terrain marks, a grid of heights and a grid of terrain (data/maps/qm2207.txt tells the format).
#pragma once

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "map/hex_map.h"

struct Terrain {
    int light = 0, cover = 0, protect = 0, hardness = 0, difficulty = 0;
    bool room = false, door = false;
};

struct MapDescription {
    int columns = 0, rows = 0;
    float heightStep = 0;
    std::map<char, Terrain> legend;
    std::vector<std::string> heights, terrain;
};

// Reads a whole description. At the first fault, false, with one line on `errors` that names the
// file, the line and the fault; nothing is given twice, and every height is a digit and every
// terrain mark in the legend.
bool readMapDescription(std::istream& in, const std::string& path, MapDescription& d, std::ostream& errors);
// The map that a description read without fault describes, walls around its rooms included.
std::unique_ptr<HexMap> buildMap(const MapDescription& d);
// Both; null, with the line on `errors`, for a description with a fault.
std::unique_ptr<HexMap> makeMap(std::istream& in, const std::string& path, std::ostream& errors);
