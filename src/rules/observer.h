// Change notification between the data model and the windows that follow it: an Observed announces
// every change to its observers, and its death as well, through the one notify slot.
#pragma once

#include <list>

class _Observer;

// Base of everything a window can follow. Copying copies no observers: a copy starts unwatched.
class Observed {
  public:
    Observed() = default;
    Observed(const Observed&) {}
    Observed& operator=(const Observed&) { return *this; }
    // Tells every observer of the death: each is first taken off, then notified, which is how an
    // observer tells death from change.
    virtual ~Observed();

    void addObserver(_Observer& o);
    void notifyChanged();

    int observerCount = 0;
    std::list<_Observer*> observers;
};

class _Observer {
  public:
    virtual ~_Observer() = default;
    virtual void changed() = 0;
    virtual void notify(Observed* sender) = 0;

    std::list<Observed*> observed;
};

// The concrete watcher: a sender it still watches has changed; a sender it no longer knows has just
// died, and the observer deletes itself.
class Observer : public _Observer {
  public:
    Observer() = default;
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    ~Observer() override;
    void notify(Observed* sender) override;
};
