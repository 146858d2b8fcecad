// Reading and writing the character files and their index files.
#include "rules/character_files.h"

#include "rules/character.h"
#include "rules/field_reader.h"
#include "rules/file_replacement.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {
const char* indexFile(bool isNpc) {
    return isNpc ? "npcs.idx" : "characters.idx";
}
std::string fileName(const std::string& name, bool isNpc) {
    return name + (isNpc ? ".npc" : ".chr");
}

bool moreRecords(std::istream& in) {
    int next = peekByte(in);
    return next != -1 && next != '[';
}

void readStats(std::istream& in, Character& c) {
    std::string line;
    while (moreRecords(in) && readLine(in, line)) {
        FieldReader fields(line);
        std::string name(fields.text());
        int dice = fields.number();
        int pips = fields.number();
        // A skill that the catalogue does not know is dropped.
        c.addSkill(makeSkill(name, dice, pips));
    }
}

void readHealth(std::istream& in, Character& c) {
    std::string line;
    readLine(in, line);
    FieldReader fields(line);
    // Stored as it stands, without the penalties that setHealth would add: those are in the file.
    int health = fields.number();
    c.health = health >= Healthy && health <= Stunned ? health : Healthy;
    c.stuns = fields.number();
    c.unconscious = fields.number();
}

void readPoints(std::istream& in, Character& c) {
    std::string line;
    readLine(in, line);
    FieldReader fields(line);
    c.characterPoints = fields.number();
    c.forcePoints = fields.number();
    c.darkSidePoints = fields.number();
}

void readPenalties(std::istream& in, Character& c) {
    std::string line;
    while (moreRecords(in) && readLine(in, line)) {
        FieldReader fields(line);
        std::string reason(fields.text());
        DiceCode dice = fields.code();
        int duration = fields.number();
        std::string applyTo(fields.text());
        c.addPenalty(new Penalty(reason, dice, duration, applyTo));
    }
}

// Items until a line that is no item header, which ends the section; "[endInventory]" is one.
void readInventory(std::istream& in, Character& c) {
    std::string line;
    while (readLine(in, line)) {
        Item* item = readItemEntry(line, in);
        if (item == nullptr) return;
        readLine(in, line);
        c.addItem(item);
        // Equipping here is what restores the "Armor" penalty that the writer leaves out.
        if (line == "1") c.equip(item);
    }
}

// The index with the name added; empty when it needs no entry because it lists the name already,
// or because it does not exist or cannot be read, which lists nobody new.
std::string indexWithName(const char* index, const std::string& name) {
    std::ifstream in(index, std::ios::binary);
    std::string bytes;
    char block[65536];
    while (in) {
        in.read(block, sizeof block);
        bytes.append(block, static_cast<std::size_t>(in.gcount()));
    }
    if (!in.eof() || in.bad()) return {};
    std::istringstream lines(bytes);
    std::string line;
    while (readLine(lines, line))
        if (line == name) return {};
    // A last line without its line end would otherwise run into the new name.
    if (!bytes.empty() && bytes.back() != '\n') bytes += '\n';
    return bytes + name + '\n';
}

void writeCharacter(std::ostream& out, const Character& c, const Weapon* weapon, const Armor* armor) {
    out << "[Stats]\n";
    for (const Skill* s : c.skills)
        out << s->name << '|' << s->level.dice << '|' << s->level.pips << '\n';
    out << "[Health]\n" << c.health << '|' << c.stuns << '|' << c.unconscious << '\n';
    out << "[Points]\n" << c.characterPoints << '|' << c.forcePoints << '|' << c.darkSidePoints << '\n';
    out << "[Penalties]\n";
    for (const Penalty* p : c.penalties)
        out << p->reason << '|' << p->dice.dice << '|' << p->dice.pips << '|' << p->duration << '|'
            << p->applyTo << '\n';
    out << "[Inventory]\n";
    for (const Item* item : c.inventory) {
        writeItemEntry(out, *item);
        out << (item == weapon || item == armor ? "1" : "0") << '\n';
    }
    out << "[endInventory]\n";
}
} // namespace

void loadCharacters() {
    for (bool isNpc : {false, true}) {
        std::ifstream index(indexFile(isNpc));
        if (!index) return;
        std::string name;
        while (readLine(index, name))
            loadCharacter(name, isNpc);
    }
}

Character* loadCharacter(const std::string& name, bool isNpc) {
    std::ifstream in(fileName(name, isNpc));
    if (!in) return nullptr;
    Character* c = new Character(isNpc);
    c->name = name;
    readCharacter(in, *c);
    return c;
}

void readCharacter(std::istream& in, Character& c) {
    std::string line;
    while (readLine(in, line)) {
        if (line == "[Stats]")
            readStats(in, c);
        else if (line == "[Health]")
            readHealth(in, c);
        else if (line == "[Inventory]")
            readInventory(in, c);
        else if (line == "[Points]")
            readPoints(in, c);
        else if (line == "[Penalties]")
            readPenalties(in, c);
    }
}

bool saveCharacter(Character& c, std::string* failure) {
    const std::string file = fileName(c.name, c.isNpc);
    const char* index = indexFile(c.isNpc);
    auto fail = [&](const std::string& name) {
        if (failure) *failure = "cannot write \"" + name + "\": " + std::strerror(errno);
        return false;
    };

    // The "Armor" penalty is not stored: unequipping takes it out, and equipping puts it back.
    std::ostringstream text;
    Weapon* weapon = c.weapon;
    Armor* armor = c.armor;
    c.unequip(weapon);
    c.unequip(armor);
    writeCharacter(text, c, weapon, armor);
    c.equip(weapon);
    c.equip(armor);

    // Both new versions are written whole before either replaces its file, and the name is listed
    // only once its file stands, so that a failure leaves the old files as they were.
    FileReplacement sheet, listing;
    if (!sheet.prepare(file, text.str())) return fail(file);
    std::string listed = indexWithName(index, c.name);
    if (!listed.empty() && !listing.prepare(index, listed)) return fail(index);
    if (!sheet.commit()) return fail(file);
    if (!listed.empty() && !listing.commit()) {
        int error = errno;
        sheet.undoNewFile();
        errno = error;
        return fail(index);
    }
    return true;
}
