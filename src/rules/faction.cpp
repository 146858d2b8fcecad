// Factions, their membership and order, and the reader of "factions.dat".
#include "rules/faction.h"

#include "rules/character.h"
#include "rules/field_reader.h"

#include <algorithm>
#include <fstream>
#include <unordered_map>
#include <vector>

std::list<Faction*> allFactions;

Faction::Faction(std::string name, float red, float green, float blue)
    : name(std::move(name)), colour{red, green, blue} {
    allFactions.push_back(this);
}

Faction::~Faction() {
    for (Character* c : members)
        c->faction = nullptr;
    allFactions.remove(this);
}

bool Faction::addMember(Character* c) {
    if (!join(c)) return false;
    sortMembers();
    notifyChanged();
    return true;
}

bool Faction::join(Character* c) {
    // A member is exactly a character whose faction this is.
    if (c == nullptr || c->faction == this) return false;
    if (Faction* old = c->faction) {
        old->members.remove(c);
        c->faction = nullptr;
        old->sortMembers();
        old->notifyChanged();
    }
    members.push_back(c);
    c->faction = this;
    return true;
}

void Faction::removeMember(Character* c) {
    auto it = std::find(members.begin(), members.end(), c);
    if (it == members.end()) return;
    members.erase(it);
    c->faction = nullptr;
    sortMembers();
    notifyChanged();
}

void Faction::sortMembers() {
    // The leader rolls for the whole faction, so the order must not flip between equals.
    std::vector<std::pair<DiceCode, Character*>> ranked;
    for (Character* c : members)
        ranked.emplace_back(effectiveCode(*c, "Perception"), c);
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    members.clear();
    for (const auto& entry : ranked)
        members.push_back(entry.second);
}

void loadFactions() {
    std::ifstream in("factions.dat");
    if (in) loadFactions(in);
}

void loadFactions(std::istream& in) {
    // The first player character of each name, as findCharacter finds it, looked up instead of
    // walked for each member line.
    std::unordered_map<std::string, Character*> byName;
    for (Character* c : allCharacters)
        byName.emplace(c->name, c);
    std::string line;
    // The header line of each block is not looked at; a block without its faction line ends the file.
    while (readLine(in, line) && readLine(in, line)) {
        FieldReader fields(line);
        std::string name(fields.text());
        float red = fields.fraction();
        float green = fields.fraction();
        float blue = fields.fraction();
        Faction* faction = new Faction(name, red, green, blue);
        // Sorted once when the block is complete, which gives the order that sorting after each
        // member would give, since the sort keeps the order of equals.
        while (peekByte(in) != -1 && peekByte(in) != '[' && readLine(in, line)) {
            auto found = byName.find(line);
            if (found != byName.end()) faction->join(found->second);
        }
        faction->sortMembers();
        faction->notifyChanged();
    }
}

void clearFactions() {
    while (!allFactions.empty())
        delete allFactions.front();
}
