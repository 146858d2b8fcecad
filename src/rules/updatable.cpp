// The global list of what ages with game time, and the walk that ages it.
#include "rules/updatable.h"

#include <iterator>

std::list<Updatable*> updatables;

namespace {
// Above 0 while updateAll walks the list: removals then only blank the entry, so that no
// iterator of the walk is ever invalidated.
int walking = 0;
} // namespace

Updatable::~Updatable() {
    removeUpdatable(this);
}

void updateAll() {
    if (updatables.empty()) return;
    ++walking;
    auto last = std::prev(updatables.end());
    for (auto it = updatables.begin();; ++it) {
        if (Updatable* u = *it) u->update(1);
        if (it == last) break;
    }
    if (--walking == 0) updatables.remove(nullptr);
}

void addUpdatable(Updatable* u) {
    updatables.push_back(u);
}

void removeUpdatable(Updatable* u) {
    if (u == nullptr) return;
    if (walking > 0) {
        for (Updatable*& entry : updatables)
            if (entry == u) entry = nullptr;
    } else {
        updatables.remove(u);
    }
}

void deleteUpdatables() {
    while (!updatables.empty()) {
        // Each destructor takes its entry, and any repeat of it, off the list.
        if (Updatable* u = updatables.front())
            delete u;
        else
            updatables.pop_front();
    }
}
