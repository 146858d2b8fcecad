// The skill catalogue and the tree of parents.
#include "rules/skill.h"

#include "rules/field_reader.h"

#include <fstream>

std::list<Skill*> allSkills;
std::map<std::string, std::string> skillParents;

std::string& parentOf(const std::string& name) {
    return skillParents[name];
}

bool descendsFrom(const std::string& name, const std::string& ancestor) {
    // A chain that does not loop has fewer links than the map has entries; parentOf may add one.
    std::string s = name;
    for (std::size_t steps = 0; !s.empty() && steps <= skillParents.size() + 1; ++steps) {
        if (s == ancestor) return true;
        s = parentOf(s);
    }
    return false;
}

Skill* makeSkill(const std::string& name, int dice, int pips) {
    for (Skill* s : allSkills)
        if (s->name == name) return new Skill(name, DiceCode(dice, pips), s->duration);
    return nullptr;
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
}
