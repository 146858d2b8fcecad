// What ages with game time: every Updatable in the global list gets one call per game round.
#pragma once

#include <list>

class Updatable {
  public:
    Updatable() = default;
    Updatable(const Updatable&) {}
    Updatable& operator=(const Updatable&) { return *this; }
    // Leaves the list, so that nothing dead is ever aged.
    virtual ~Updatable();
    virtual void update(int amount) = 0;
};

// In order of registration. Membership is explicit: see addUpdatable. While updateAll walks, an
// entry that is removed stays behind as a null until the walk is over.
extern std::list<Updatable*> updatables;

// Ages everything by one round. An entry may remove itself, or any other, from inside its update;
// the others still get their call. Entries added during the walk get theirs in the next round.
void updateAll();
void addUpdatable(Updatable* u);
// Removes every entry equal to u; absent is no error.
void removeUpdatable(Updatable* u);
// Deletes every entry, each of which leaves the list as it dies. At the end of the program this
// frees, with the characters, what nothing but the list holds: a grenade still burning.
void deleteUpdatables();
