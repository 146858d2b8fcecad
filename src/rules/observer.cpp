// Change notification between the data model and the windows that follow it.
#include "rules/observer.h"

#include <algorithm>

Observed::~Observed() {
    for (auto it = observers.begin(); it != observers.end(); ++it) {
        _Observer* o = *it;
        // An observer registered twice has already been told, and may be gone.
        if (std::find(observers.begin(), it, o) != it) continue;
        o->observed.remove(this);
        o->notify(this);
    }
    observers.clear();
    observerCount = 0;
}

void Observed::addObserver(_Observer& o) {
    observers.push_back(&o);
    o.observed.push_back(this);
    observerCount = static_cast<int>(observers.size());
}

void Observed::notifyChanged() {
    // An observer only marks itself here, so the list does not change under the walk.
    for (_Observer* o : observers)
        o->notify(this);
}

Observer::~Observer() {
    for (auto it = observed.begin(); it != observed.end();) {
        Observed* d = *it;
        it = observed.erase(it);
        d->observers.remove(this);
        d->observerCount = static_cast<int>(d->observers.size());
    }
}

void Observer::notify(Observed* sender) {
    if (std::find(observed.begin(), observed.end(), sender) != observed.end())
        changed();
    else
        delete this;
}
