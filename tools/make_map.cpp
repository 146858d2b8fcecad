// make_map: turns a readable description of a map (a legend, a grid of heights and a grid of
// terrain; the format is told at the top of data/maps/qm2207.txt) into the map file that Hexfold
// reads. The map is built as the program's own HexMap and written by its own writer.
//
//   make_map DESCRIPTION OUTPUT
#include <fstream>
#include <iostream>

#include "map_description.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: make_map DESCRIPTION OUTPUT\n";
        return 2;
    }
    std::ifstream in(argv[1]);
    if (!in) {
        std::cerr << "make_map: cannot read " << argv[1] << "\n";
        return 1;
    }
    std::unique_ptr<HexMap> map = makeMap(in, argv[1], std::cerr);
    if (!map) return 1;
    std::ofstream out(argv[2], std::ios::binary | std::ios::trunc);
    map->write(out);
    if (!out) {
        std::cerr << "make_map: cannot write " << argv[2] << "\n";
        return 1;
    }
    return 0;
}
