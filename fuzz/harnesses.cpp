// The harness bodies: each reader of the program, fed one input through the working directory, and
// then what the program does with what it read. A promise that the program breaks aborts, so that
// the fuzzer keeps the input.
#include "harness.h"

#include <IL/il.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <time.h>

#include "map/ground_picture.h"
#include "map/hex_map.h"
#include "map_description.h"
#include "rules/character.h"
#include "rules/character_files.h"
#include "rules/faction.h"
#include "rules/field_reader.h"
#include "rules/item.h"
#include "rules/random_source.h"
#include "rules/skill.h"
#include "rules/updatable.h"
#include "toolkit/font.h"

namespace {
void require(bool holds, const char* promise) {
    if (holds) return;
    std::fprintf(stderr, "harness: broken promise: %s\n", promise);
    std::abort();
}

// Runs a reader and checks that it took no more than a second of processor time: the time the
// process was given, not the clock's, since the fuzzers share their cores with other work.
class ReadingTime {
  public:
    ReadingTime() : start(now()) {}
    ~ReadingTime() { require(now() - start <= 1.0, "a reader takes at most a second"); }

  private:
    static double now() {
        timespec t{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
        return double(t.tv_sec) + 1e-9 * double(t.tv_nsec);
    }
    double start;
};
template <class Read> auto timed(Read read) {
    ReadingTime time;
    return read();
}

void writeFile(const std::string& name, std::string_view bytes) {
    std::ofstream(name, std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string readFile(const std::filesystem::path& name) {
    return (std::ostringstream() << std::ifstream(name, std::ios::binary).rdbuf()).str();
}

const std::string& sampleSkills() {
    static const std::string text = readFile(std::filesystem::path(HEXFOLD_CAMPAIGN_SOURCE) / "skills.dat");
    return text;
}

void loadSampleSkills() {
    std::istringstream in(sampleSkills());
    loadSkills(in);
}

// Each input starts from an empty model and the same dice, and leaves nothing behind.
struct FreshModel {
    FreshModel() { clearModel(), sharedRandom.seedWord(0x5eed); }
    ~FreshModel() { clearModel(); }
};

// What the rules ask of a character: the measure of every skill and of every name a penalty falls
// on, a weapon's reach, a round of aging and a hit.
void exerciseCharacter(Character& c) {
    for (const Skill* s : c.skills)
        nothingLeft(effectiveCode(c, s->name));
    for (const Penalty* p : c.penalties)
        nothingLeft(effectiveCode(c, p->applyTo));
    for (float range : {0.0f, 1.0f, 7.5f, 100.0f})
        c.weapon->getDifficulty(range);
    c.moveBudget();
    c.update(1);
    c.takeDamage(6);
    nothingLeft(effectiveCode(c, "Dexterity"));
}

void skillsHarness(std::string_view input) {
    FreshModel model;
    writeFile("skills.dat", input);
    timed([] { loadSkills(); });
    // A character who knows every skill at the level of its parent, as one learns them on a sheet.
    Character c(false);
    for (const Skill* s : allSkills) {
        Lineage lineage(s->name);
        require(lineage.rank(s->name) == 0, "a name stands first in its own lineage");
        c.addSkill(makeSkill(s->name, 0, 0));
    }
    for (const Skill* s : allSkills)
        require(descendsFrom(s->name, s->name) == !s->name.empty(), "a named skill descends from itself");
    exerciseCharacter(c);
}

void itemsHarness(std::string_view input) {
    FreshModel model;
    writeFile("items.dat", input);
    timed([] { loadItems(); });
    Character c(false);
    for (const Item* item : allItems) {
        // Items travel through character files: what is written must read back the same.
        std::ostringstream once, twice;
        writeItemEntry(once, *item);
        std::istringstream back(once.str());
        std::string header;
        readLine(back, header);
        std::unique_ptr<Item> copy(readItemEntry(header, back));
        require(copy != nullptr, "a written item reads back");
        writeItemEntry(twice, *copy);
        require(once.str() == twice.str(), "an item reads back as it was written");

        Item* own = item->clone();
        c.addItem(own);
        c.equip(own);
        own->use();
        if (auto* grenade = dynamic_cast<Grenade*>(own)) grenade->update(1);
    }
    exerciseCharacter(c);
    c.unequip(c.armor);
    for (const Penalty* p : c.penalties)
        require(p->reason != "Armor", "taking the armor off takes its penalty off");
}

void characterHarness(std::string_view input) {
    FreshModel model;
    loadSampleSkills();
    writeFile("Rook.chr", input);
    std::string saved[2];
    for (std::string& text : saved) {
        Character* c = timed([] { return loadCharacter("Rook", false); });
        require(c != nullptr, "a character file that is there loads");
        // Saving and reading again changes nothing that a second save would show.
        require(saveCharacter(*c), "a character saves in a writable directory");
        text = readFile("Rook.chr");
        exerciseCharacter(*c);
        delete c;
    }
    require(saved[0] == saved[1], "a saved character reads back as it was saved");
}

void indexesHarness(std::string_view input) {
    FreshModel model;
    loadSampleSkills();
    // Both indexes in one input: the player characters', then after a zero byte the NPCs'.
    std::size_t split = input.find('\0');
    writeFile("characters.idx", input.substr(0, split));
    writeFile("npcs.idx", split == input.npos ? std::string_view() : input.substr(split + 1));
    timed([] { loadCharacters(); });
    for (auto* list : {&allCharacters, &allNpcs})
        for (Character* c : *list)
            for (const Skill* s : c->skills)
                nothingLeft(effectiveCode(*c, s->name));
}

// Every member's faction lists it once, and every faction's members name it as theirs.
void requireMembership() {
    for (const Faction* f : allFactions)
        for (const Character* c : f->members)
            require(c->faction == f, "a member's faction is the faction that lists it");
    for (auto* list : {&allCharacters, &allNpcs})
        for (const Character* c : *list)
            if (c->faction)
                require(std::count(c->faction->members.begin(), c->faction->members.end(), c) == 1,
                        "a faction lists each of its members once");
}

void factionsHarness(std::string_view input) {
    FreshModel model;
    loadSampleSkills();
    loadCharacters();
    writeFile("factions.dat", input);
    timed([] { loadFactions(); });
    requireMembership();
    // What combat does with factions: the leader rolls for all, and members change sides.
    for (Faction* f : allFactions) {
        f->initiative = -1;
        for (Character* c : f->members)
            c->setInitiative(7);
        for (const Character* c : f->members)
            require(c->getInitiative() == f->initiative, "a faction's members share one initiative");
    }
    if (!allFactions.empty() && !allCharacters.empty()) {
        allFactions.back()->addMember(allCharacters.front());
        allFactions.front()->removeMember(allCharacters.back());
    }
    requireMembership();
}

// What a frame and a move ask of a map: the cell under a point, a way between two cells and a step
// beyond it, a line of sight, and the map written back.
void exerciseMap(Map& map, std::string_view input) {
    std::size_t n = map.cells.size();
    require(n > 0 && n == std::size_t(map.columns) * std::size_t(map.rows),
            "a map has its columns x rows cells");
    std::size_t h = std::hash<std::string_view>()(input);
    Cell* from = map.cells[h % n];
    Cell* to = map.cells[(h / n) % n];
    for (Cell* c : {from, to})
        require(map.cellAt(c->centre.x, c->centre.y) == c, "a cell's centre lies in the cell");

    Character mover(false);
    placeCharacter(&mover, from);
    map.hovered = to;
    map.findPath(&mover);
    if (!map.pendingPath.empty())
        require(map.pendingPath.front().cell == from && map.pendingPath.back().cell == to,
                "a way runs from the mover to the cell pointed at");
    map.commitPath();
    map.hovered = map.cells[(h / n / n) % n];
    map.findPath(&mover);
    map.clearPendingPath();
    map.clearCommittedPath();
    map.traceLine(from, to);
    from->occupant = nullptr;
    mover.cell = nullptr;

    std::ostringstream written;
    map.write(written);
}

void mapHarness(std::string_view input) {
    FreshModel model;
    writeFile("qm2207.map6", input);
    std::unique_ptr<Map> map(timed([] { return loadMap(nullptr); }));
    if (map) exerciseMap(*map, input);
}

void mapDescriptionHarness(std::string_view input) {
    FreshModel model;
    writeFile("qm2207.txt", input);
    std::ifstream in("qm2207.txt");
    std::ostringstream errors;
    std::unique_ptr<HexMap> made = timed([&] { return makeMap(in, "qm2207.txt", errors); });
    if (!made) {
        std::string message = errors.str();
        require(!message.empty() && message.find('\n') == message.size() - 1,
                "a refused description is answered with one line");
        return;
    }
    // The map maker's map reads back through the program's reader as the map it made.
    std::stringstream file;
    made->write(file);
    std::unique_ptr<Map> read(timed([&] { return loadMap(file, "qm2207.map6", nullptr); }));
    require(read && read->columns == made->columns && read->rows == made->rows,
            "a made map reads back at its size");
    for (std::size_t i = 0; i < made->cells.size(); ++i) {
        const Cell &a = *made->cells[i], &b = *read->cells[i];
        require(a.light == b.light && a.cover == b.cover && a.protect == b.protect &&
                    a.hardness == b.hardness && a.difficulty == b.difficulty &&
                    std::equal(a.walls, a.walls + a.sides, b.walls),
                "a made map reads back with its terrain and walls");
        require(std::fabs(a.centre.z - b.centre.z) <= 1e-5f * std::fabs(a.centre.z),
                "a made map reads back with its heights");
    }
    exerciseMap(*made, input);
}

void fontHarness(std::string_view input) {
    writeFile("verdana.glf", input);
    FontFile font;
    if (!timed([&] { return readFontFile(font); })) return;
    require(font.glyphs.size() == std::size_t(font.lastChar - font.firstChar) + 1 &&
                font.pixels.size() == 2 * std::size_t(font.textureWidth) * std::size_t(font.textureHeight),
            "a font has a glyph for each character of its range and two bytes for each texel");
    // Text is measured with the font as the program loads it, without a texture to draw with.
    fontGlyphs = std::move(font.glyphs);
    fontFirstChar = font.firstChar;
    fontLastChar = font.lastChar;
    fontLoaded = true;
    std::string every;
    for (int c = 0; c < 256; ++c)
        every += static_cast<char>(c);
    for (float size : {0.0f, 1.0f, 2.5f})
        measureText(every, size);
    measureText("Tobin Greaves\t4D+2\n\tWounded", 2);
    fontLoaded = false;
    fontGlyphs.clear();
}

void groundPictureHarness(std::string_view input) {
    static bool started = (ilInit(), true);
    (void)started;
    writeFile("back.dds", input);
    ILuint image = 0;
    ilGenImages(1, &image);
    ilBindImage(image);
    if (timed([] { return readGroundPicture("back.dds"); })) {
        // Every level as the texture upload takes it: all the bytes that the library says it holds.
        ILint levels = ilGetInteger(IL_NUM_MIPMAPS);
        for (ILint level = 0; level <= levels; ++level) {
            ilBindImage(image);
            if (level > 0 && !ilActiveMipmap(static_cast<ILuint>(level))) break;
            const ILubyte* data = ilGetData();
            ILint size = ilGetInteger(IL_IMAGE_SIZE_OF_DATA);
            require(data != nullptr || size == 0, "a decoded level has its pixels");
            unsigned sum = 0;
            for (ILint i = 0; i < size; ++i)
                sum += data[i];
            (void)sum;
        }
        ilBindImage(image);
        ilConvertImage(IL_RGBA, IL_UNSIGNED_BYTE);
    }
    ilDeleteImages(1, &image);
}
} // namespace

const Harness harnesses[] = {
    {"skills", skillsHarness},
    {"items", itemsHarness},
    {"character", characterHarness},
    {"indexes", indexesHarness},
    {"factions", factionsHarness},
    {"map", mapHarness},
    {"font", fontHarness},
    {"ground_picture", groundPictureHarness},
    {"map_description", mapDescriptionHarness},
};
const int harnessCount = static_cast<int>(std::size(harnesses));

const Harness* findHarness(std::string_view name) {
    for (const Harness& h : harnesses)
        if (name == h.name) return &h;
    return nullptr;
}

void prepareDirectory() {
    for (const auto& entry : std::filesystem::directory_iterator(HEXFOLD_CAMPAIGN_SOURCE))
        std::filesystem::copy_file(entry.path(), entry.path().filename(),
                                   std::filesystem::copy_options::overwrite_existing);
}
