// make_map: turns a readable description of a map (a legend, a grid of heights and a grid of
// terrain; the format is told at the top of data/maps/qm2207.txt) into the map file that Hexfold
// reads. The map is built as the program's own HexMap and written by its own writer.
//
//   make_map DESCRIPTION OUTPUT
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "map/hex_map.h"

namespace {
struct Terrain {
    int light = 0, cover = 0, protect = 0, hardness = 0, difficulty = 0;
    bool room = false, door = false;
};

struct Description {
    int columns = 0, rows = 0;
    float heightStep = 0;
    std::map<char, Terrain> legend;
    std::vector<std::string> heights, terrain;
};

class Reader {
  public:
    Reader(const char* path, std::istream& in) : path(path), in(in) {}

    bool read(Description& d) {
        std::string line;
        while (next(line)) {
            if (line.empty() || line[0] == '#') continue;
            std::istringstream words(line);
            std::string word;
            words >> word;
            if (word == "size") {
                if (!(words >> d.columns >> d.rows) || d.columns < 1 || d.rows < 1 ||
                    d.columns > maxMapSide || d.rows > maxMapSide)
                    return fail("size wants two numbers from 1 to " + std::to_string(maxMapSide));
            } else if (word == "legend") {
                if (!legend(words, d)) return false;
            } else if (word == "heights") {
                if (!(words >> d.heightStep)) return fail("heights wants the metres of one digit");
                if (!grid(d, d.heights)) return false;
            } else if (word == "terrain") {
                if (!grid(d, d.terrain)) return false;
            } else {
                return fail("unknown word \"" + word + "\"");
            }
        }
        if (d.heights.empty() || d.terrain.empty())
            return fail("both grids, heights and terrain, are needed");
        return true;
    }

    bool fail(const std::string& what) {
        std::cerr << "make_map: " << path << ":" << number << ": " << what << "\n";
        return false;
    }

  private:
    bool next(std::string& line) {
        if (!std::getline(in, line)) return false;
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        return true;
    }

    bool legend(std::istringstream& words, Description& d) {
        char mark = 0;
        if (!(words >> mark)) return fail("legend wants a character");
        Terrain t;
        std::string key;
        while (words >> key) {
            if (key == "room") {
                t.room = true;
                continue;
            }
            if (key == "door") {
                t.door = true;
                continue;
            }
            int value = 0;
            if (!(words >> value)) return fail("\"" + key + "\" wants a number");
            bool dice = key != "difficulty";
            if (dice && (value < 0 || value > 99)) return fail("dice run from 0 to 99");
            if (key == "light")
                t.light = value;
            else if (key == "cover")
                t.cover = value;
            else if (key == "protect")
                t.protect = value;
            else if (key == "hardness")
                t.hardness = value;
            else if (key == "difficulty")
                t.difficulty = value;
            else
                return fail("unknown legend key \"" + key + "\"");
        }
        d.legend[mark] = t;
        return true;
    }

    bool grid(const Description& d, std::vector<std::string>& rows) {
        if (d.columns < 1) return fail("the size comes before the grids");
        rows.clear();
        std::string line;
        while (static_cast<int>(rows.size()) < d.rows) {
            if (!next(line)) return fail("the grid ends after " + std::to_string(rows.size()) + " rows");
            if (static_cast<int>(line.size()) != d.columns)
                return fail("a grid row has " + std::to_string(line.size()) + " characters, not " +
                            std::to_string(d.columns));
            rows.push_back(line);
        }
        return true;
    }

    const char* path;
    std::istream& in;
    int number = 0;
};

bool inRoom(const Terrain& t) {
    return t.room || t.door;
}
} // namespace

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
    Description d;
    Reader reader(argv[1], in);
    if (!reader.read(d)) return 1;

    HexMap map(nullptr, d.columns, d.rows);
    std::vector<const Terrain*> terrain(map.cells.size());
    for (int r = 0; r < d.rows; ++r)
        for (int c = 0; c < d.columns; ++c) {
            Cell* cell = map.cells[r * d.columns + c];
            char h = d.heights[r][c], mark = d.terrain[r][c];
            if (h < '0' || h > '9') {
                std::cerr << "make_map: height '" << h << "' at column " << c << ", row " << r
                          << " is no digit\n";
                return 1;
            }
            auto found = d.legend.find(mark);
            if (found == d.legend.end()) {
                std::cerr << "make_map: '" << mark << "' at column " << c << ", row " << r
                          << " is not in the legend\n";
                return 1;
            }
            const Terrain& t = found->second;
            terrain[r * d.columns + c] = &t;
            cell->setHeight((h - '0') * d.heightStep);
            cell->light.dice = t.light;
            cell->cover.dice = t.cover;
            cell->protect.dice = t.protect;
            cell->hardness.dice = t.hardness;
            cell->difficulty = t.difficulty;
        }
    // A room is walled in on both sides of its edge, but where a doorway lies.
    for (std::size_t i = 0; i < map.cells.size(); ++i) {
        Cell* cell = map.cells[i];
        if (!terrain[i]->room || terrain[i]->door) continue;
        for (int side = 0; side < cell->sides; ++side) {
            Cell* other = cell->neighbours[side];
            if (!other) continue;
            std::size_t j = static_cast<std::size_t>(other - map.cells[0]);
            if (inRoom(*terrain[j])) continue;
            cell->walls[side] = true;
            other->walls[(side + 3) % 6] = true;
        }
    }

    std::ofstream out(argv[2], std::ios::binary | std::ios::trunc);
    map.write(out);
    if (!out) {
        std::cerr << "make_map: cannot write " << argv[2] << "\n";
        return 1;
    }
    return 0;
}
