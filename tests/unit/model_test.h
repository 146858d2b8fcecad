// Tests of the rules model start and end with empty catalogues, so that they also pass when they
// all run in one process.
#pragma once

#include "rules/character.h"
#include "rules/faction.h"
#include "rules/updatable.h"
#include "temp_dir.h"

#include <algorithm>
#include <vector>

template <class Base> class Model : public Base {
  protected:
    void SetUp() override { clearModel(), Base::SetUp(); }
    void TearDown() override { clearModel(), Base::TearDown(); }
};
using ModelTest = Model<::testing::Test>;
using ModelFileTest = Model<TempDirTest>;

// Failures show codes as the referee reads them.
inline void PrintTo(const DiceCode& code, std::ostream* out) {
    *out << code.text();
}

inline int countReason(const Character& c, const std::string& reason) {
    return static_cast<int>(std::count_if(c.penalties.begin(), c.penalties.end(),
                                          [&](Penalty* p) { return p->reason == reason; }));
}

// A new character, owned by its list, with the given skills in order.
inline Character& person(const std::string& name,
                         std::initializer_list<std::pair<const char*, DiceCode>> skills, bool isNpc = false) {
    auto* c = new Character(isNpc);
    c->name = name;
    for (auto [skill, level] : skills)
        c->addSkill(new Skill(skill, level));
    return *c;
}

using Names = std::vector<std::string>;
template <class T> Names names(const std::list<T*>& list) {
    Names result;
    for (const T* t : list)
        result.push_back(t->name);
    return result;
}
