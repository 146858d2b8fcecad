// Change and death notification, and the aging walk of updateAll, checked by the order in which
// the handlers ran.
#include "rules/item.h"

#include <gtest/gtest.h>

namespace {
using Log = std::vector<std::string>;

struct Watcher : Observer {
    Watcher(Log& log, std::string name) : log(log), name(std::move(name)) {}
    ~Watcher() override { log.push_back(name + " died"); }
    void changed() override { log.push_back(name + " changed"); }
    Log& log;
    std::string name;
};

struct Ticker : Updatable {
    Ticker(Log& log, std::string name) : log(log), name(std::move(name)) { addUpdatable(this); }
    void update(int) override {
        log.push_back(name);
        removeUpdatable(victim);
        if (recruit) addUpdatable(std::exchange(recruit, nullptr));
    }
    Log& log;
    std::string name;
    Updatable *victim = nullptr, *recruit = nullptr;
};

struct Blast {
    int onExplode(Grenade* g) {
        log.push_back(g->name + " exploded");
        delete g;
        return 0;
    }
    Log& log;
};
} // namespace

TEST(Observed, TwoWatchersSeeEveryChangeAndDieWithTheObject) {
    Log log;
    Observed one;
    auto* dying = new Observed;
    auto *first = new Watcher(log, "first"), *second = new Watcher(log, "second"),
         *closed = new Watcher(log, "closed");
    for (Watcher* w : {first, closed, second})
        dying->addObserver(*w);
    one.addObserver(*second);
    EXPECT_EQ(dying->observerCount, 3);
    EXPECT_EQ(dying->observers.front(), first);
    delete closed;
    dying->notifyChanged();
    Observed copy(*dying);
    EXPECT_EQ(copy.observerCount + copy.observers.size(), 0u) << "a copy starts unwatched";
    delete dying;
    // The death ended the second watcher, which let go of the other object it watched.
    EXPECT_EQ(one.observerCount, 0);
    one.notifyChanged();
    EXPECT_EQ(log, (Log{"closed died", "first changed", "second changed", "first died", "second died"}));
}

TEST(Updatables, AGrenadeGoesOffWhenItsFuseDropsBelowZeroAndTheWalkGoesOn) {
    Log log;
    Blast blast{log};
    updateAll();
    Ticker first(log, "first"), second(log, "second"), late(log, "late");
    removeUpdatable(&late);
    auto* charge = new Grenade("Pressure Charge", "Thrown Weapons", {}, {}, {3, 7, 12, 20}, 0);
    charge->fuse = 1;
    charge->explodeHandler.bind(&blast, &Blast::onExplode);
    std::unique_ptr<Item> clone(charge->clone());
    addUpdatable(charge);
    Ticker third(log, "third");
    first.recruit = &late;
    updateAll();
    first.victim = &second;
    updateAll();
    EXPECT_EQ(log, (Log{"first", "second", "third", "first", "Pressure Charge exploded", "third", "late"}))
        << "a new entry waits a round, a removed one gets no call";
    EXPECT_EQ(updatables, (std::list<Updatable*>{&first, &third, &late})) << "the clone does not count down";
    EXPECT_EQ(static_cast<Grenade&>(*clone).fuse, 1);
}
