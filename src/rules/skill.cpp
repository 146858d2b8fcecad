// The skill catalogue and the tree of parents.
#include "rules/skill.h"

#include "rules/field_reader.h"

#include <fstream>

std::list<Skill*> allSkills;
std::map<std::string, std::string> skillParents;

namespace {
// The first catalogue entry of each name, for makeSkill, so that a character file of many skills
// is not read in time that grows with the square of its size. The catalogue only grows until
// clearSkills empties it, so a count tells whether the index is up to date.
std::unordered_map<std::string, const Skill*> firstOfName;
std::size_t indexed = 0;
} // namespace

std::string& parentOf(const std::string& name) {
    return skillParents[name];
}

Lineage::Lineage(const std::string& name) : first(name), chain{&first} {
    // The parents are the map's own strings, which stay where they are while the map grows.
    for (const std::string* s = &parentOf(name); !s->empty() && rank(*s) == size(); s = &parentOf(*s)) {
        chain.push_back(s);
        if (chain.size() == searched)
            for (std::size_t i = 0; i < chain.size(); ++i)
                ranks.emplace(*chain[i], i);
        else if (chain.size() > searched)
            ranks.emplace(*s, chain.size() - 1);
    }
}

std::size_t Lineage::rank(std::string_view name) const {
    if (chain.size() < searched) {
        for (std::size_t i = 0; i < chain.size(); ++i)
            if (*chain[i] == name) return i;
        return chain.size();
    }
    auto found = ranks.find(name);
    return found == ranks.end() ? chain.size() : found->second;
}

bool descendsFrom(const std::string& name, const std::string& ancestor) {
    if (name.empty()) return false;
    Lineage lineage(name);
    return lineage.rank(ancestor) < lineage.size();
}

Skill* makeSkill(const std::string& name, int dice, int pips) {
    if (indexed != allSkills.size()) {
        firstOfName.clear();
        for (const Skill* s : allSkills)
            firstOfName.emplace(s->name, s);
        indexed = allSkills.size();
    }
    auto found = firstOfName.find(name);
    if (found == firstOfName.end()) return nullptr;
    return new Skill(name, DiceCode(dice, pips), found->second->duration);
}

void loadSkills() {
    std::ifstream in("skills.dat");
    if (in) loadSkills(in);
}

void loadSkills(std::istream& in) {
    std::string line;
    while (peekByte(in) > '0' && readLine(in, line)) {
        FieldReader fields(line);
        std::string name(fields.text());
        std::string parent(fields.text());
        int duration = fields.number();
        allSkills.push_back(new Skill(name, DiceCode(), duration));
        skillParents[name] = parent;
    }
}

void clearSkills() {
    for (Skill* s : allSkills)
        delete s;
    allSkills.clear();
    skillParents.clear();
    firstOfName.clear();
    indexed = 0;
}
