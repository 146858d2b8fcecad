// Reading a map description and building the map it describes.
#include "map_description.h"

#include <cmath>
#include <ostream>
#include <sstream>

#include "rules/field_reader.h"

namespace {
class Reader {
  public:
    Reader(std::istream& in, const std::string& path, std::ostream& errors)
        : in(in), path(path), errors(errors) {}

    bool read(MapDescription& d) {
        std::string line;
        while (next(line)) {
            if (line.empty() || line[0] == '#') continue;
            std::istringstream words(line);
            std::string word;
            words >> word;
            if (word == "size") {
                if (d.columns > 0) return fail("the size is given twice");
                if (!(words >> d.columns >> d.rows) || !ends(words) || d.columns < 1 || d.rows < 1 ||
                    d.columns > maxMapSide || d.rows > maxMapSide)
                    return fail("size wants two numbers from 1 to " + std::to_string(maxMapSide));
                if (static_cast<long long>(d.columns) * d.rows > maxMapCells)
                    return fail("a map has at most " + std::to_string(maxMapCells) + " cells, this one " +
                                std::to_string(d.columns) + " x " + std::to_string(d.rows));
            } else if (word == "legend") {
                if (!legend(words, d)) return false;
            } else if (word == "heights") {
                if (!d.heights.empty()) return fail("the heights are given twice");
                if (!(words >> d.heightStep) || !ends(words) || !(std::fabs(d.heightStep) <= 1000))
                    return fail("heights wants the metres of one digit, up to 1000");
                if (!grid(d, d.heights, heightsLine)) return false;
            } else if (word == "terrain") {
                if (!d.terrain.empty()) return fail("the terrain is given twice");
                if (!ends(words)) return fail("terrain wants nothing after it");
                if (!grid(d, d.terrain, terrainLine)) return false;
            } else {
                return fail("unknown word \"" + word + "\"");
            }
        }
        if (in.bad()) return fail("the file cannot be read");
        if (d.heights.empty() || d.terrain.empty())
            return fail("both grids, heights and terrain, are needed");
        // The legend may follow the grids, so the marks are checked at the end.
        for (int r = 0; r < d.rows; ++r) {
            for (int c = 0; c < d.columns; ++c) {
                char h = d.heights[r][c], mark = d.terrain[r][c];
                if (h < '0' || h > '9')
                    return failAt(heightsLine + r, std::string("height '") + h + "' in column " +
                                                       std::to_string(c) + " is no digit");
                if (d.legend.count(mark) == 0)
                    return failAt(terrainLine + r, std::string("'") + mark + "' in column " +
                                                       std::to_string(c) + " is not in the legend");
            }
        }
        return true;
    }

  private:
    bool next(std::string& line) {
        if (!readLine(in, line)) return false;
        ++number;
        return true;
    }

    bool fail(const std::string& what) { return failAt(number, what); }
    bool failAt(int line, const std::string& what) {
        errors << "make_map: " << path << ":" << line << ": " << what << "\n";
        return false;
    }

    static bool ends(std::istringstream& words) {
        std::string more;
        return !(words >> more);
    }

    bool legend(std::istringstream& words, MapDescription& d) {
        char mark = 0;
        if (!(words >> mark)) return fail("legend wants a character");
        if (d.legend.count(mark)) return fail("legend '" + std::string(1, mark) + "' is given twice");
        Terrain t;
        std::string key;
        while (words >> key) {
            if (key == "room" || key == "door") {
                (key == "room" ? t.room : t.door) = true;
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

    bool grid(const MapDescription& d, std::vector<std::string>& rows, int& firstLine) {
        if (d.columns < 1) return fail("the size comes before the grids");
        firstLine = number + 1;
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

    std::istream& in;
    const std::string& path;
    std::ostream& errors;
    int number = 0;
    int heightsLine = 0, terrainLine = 0; // of the first row of each grid
};

bool inRoom(const Terrain& t) {
    return t.room || t.door;
}
} // namespace

bool readMapDescription(std::istream& in, const std::string& path, MapDescription& d, std::ostream& errors) {
    return Reader(in, path, errors).read(d);
}

std::unique_ptr<HexMap> buildMap(const MapDescription& d) {
    auto map = std::make_unique<HexMap>(nullptr, d.columns, d.rows);
    std::vector<const Terrain*> terrain(map->cells.size());
    for (int r = 0; r < d.rows; ++r) {
        for (int c = 0; c < d.columns; ++c) {
            Cell* cell = map->cells[r * d.columns + c];
            const Terrain& t = d.legend.at(d.terrain[r][c]);
            terrain[r * d.columns + c] = &t;
            cell->setHeight(static_cast<float>(d.heights[r][c] - '0') * d.heightStep);
            cell->light.dice = t.light;
            cell->cover.dice = t.cover;
            cell->protect.dice = t.protect;
            cell->hardness.dice = t.hardness;
            cell->difficulty = t.difficulty;
        }
    }
    // A room is walled in on both sides of its edge, but where a doorway lies.
    for (std::size_t i = 0; i < map->cells.size(); ++i) {
        Cell* cell = map->cells[i];
        if (!terrain[i]->room || terrain[i]->door) continue;
        for (int side = 0; side < cell->sides; ++side) {
            Cell* other = cell->neighbours[side];
            if (!other) continue;
            std::size_t j = static_cast<std::size_t>(other - map->cells[0]);
            if (inRoom(*terrain[j])) continue;
            cell->walls[side] = true;
            other->walls[(side + 3) % 6] = true;
        }
    }
    return map;
}

std::unique_ptr<HexMap> makeMap(std::istream& in, const std::string& path, std::ostream& errors) {
    MapDescription d;
    if (!readMapDescription(in, path, d, errors)) return nullptr;
    return buildMap(d);
}
