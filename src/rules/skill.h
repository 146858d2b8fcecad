// Skills and attributes: the catalogue read from "skills.dat", and the tree of parents through
// which an untrained skill falls back on its attribute.
#pragma once

#include "rules/dice.h"
#include "rules/observer.h"

#include <istream>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// A named level. In the catalogue the level is 0D+0; a character holds its own copies.
class Skill : public Observed {
  public:
    explicit Skill(std::string name = {}, DiceCode level = {}, int duration = 0)
        : name(std::move(name)), level(level), duration(duration) {}

    std::string name;
    DiceCode level;
    // Carried with every copy and shown; no rule reads it.
    int duration;
};

// The catalogue in file order; owns its entries.
extern std::list<Skill*> allSkills;
// Skill name to parent name; an attribute has the empty parent.
extern std::map<std::string, std::string> skillParents;

// The parent of a name. An unknown name is entered with the empty parent, so that any name can be
// climbed and every climb ends.
std::string& parentOf(const std::string& name);

// A name and its ancestors, nearest first, up to its attribute; a tree that loops in a hand-edited
// file ends where the climb comes round again. How near a name stands costs a few comparisons in
// a tree of a few levels and one look-up in a deeper one, so that a climb is never slower than
// the tree is deep.
class Lineage {
  public:
    explicit Lineage(const std::string& name);
    // The chain points into the object itself.
    Lineage(const Lineage&) = delete;
    Lineage& operator=(const Lineage&) = delete;
    std::size_t size() const { return chain.size(); }
    // The place of the name in the lineage, 0 for the name itself; size() when it is not in it.
    std::size_t rank(std::string_view name) const;

  private:
    static constexpr std::size_t searched = 8; // longer lineages are looked up
    std::string first;
    std::vector<const std::string*> chain; // the name, then entries of skillParents
    std::unordered_map<std::string_view, std::size_t> ranks;
};

// Whether a climb from name, through its parents, meets ancestor; the name itself counts, unless
// it is empty.
bool descendsFrom(const std::string& name, const std::string& ancestor);

// A new skill with the catalogue entry's name and duration and the given level, owned by the
// caller; null when the catalogue lacks the name.
Skill* makeSkill(const std::string& name, int dice, int pips);

// Reads "skills.dat". A line that begins with a character not above "0" (a blank line, a space, a
// "0", the end of the file) ends the list.
void loadSkills();
void loadSkills(std::istream& in);
// Deletes the catalogue and forgets the tree.
void clearSkills();
