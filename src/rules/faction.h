// Factions: groups of characters that share one initiative and one colour on the map.
#pragma once

#include "rules/observer.h"

#include <istream>
#include <list>
#include <string>

class Character;

class Faction : public Observed {
  public:
    // Joins allFactions.
    Faction(std::string name, float red, float green, float blue);
    Faction(const Faction&) = delete;
    Faction& operator=(const Faction&) = delete;
    // Leaves allFactions; the members go on without a faction.
    ~Faction() override;

    // Takes the character from its old faction, if any; false for null or a member already here.
    bool addMember(Character* c);
    // addMember without sorting the members or announcing the change: a reader adding many at once
    // does both once at the end.
    bool join(Character* c);
    // The character goes on existing, without a faction; one that is no member is left alone.
    void removeMember(Character* c);
    // The member whose "Perception" is worth most after penalties first; equal ones keep their order.
    void sortMembers();

    std::string name;
    std::list<Character*> members;
    // Shared by all members; below 0 means not rolled yet. A new faction counts as rolled.
    int initiative = 0;
    float colour[3];
};

// In order of creation.
extern std::list<Faction*> allFactions;

// Reads "factions.dat": blocks of a header line, a line "name|red|green|blue", and the names of
// player characters, one a line, up to the next line that starts with "[".
void loadFactions();
void loadFactions(std::istream& in);
// Deletes every faction.
void clearFactions();
