// Change and death notification, and the aging walk of updateAll, checked by the order in which
// the handlers ran.
#include "rules/item.h"

#include <gtest/gtest.h>

namespace {
using Log = std::vector<std::string>;

// Logs what it hears as an observer and as an updatable; it adds its recruit during the walk.
struct Logger : Observer, Updatable {
    Logger(Log& log, std::string name) : log(log), name(std::move(name)) {}
    ~Logger() override { log.push_back(name + " died"); }
    void changed() override { log.push_back(name + " changed"); }
    void update(int) override {
        log.push_back(name);
        if (recruit) addUpdatable(std::exchange(recruit, nullptr));
    }
    int explode(Grenade* g) {
        log.push_back(g->name + " exploded");
        delete g;
        return 0;
    }
    Log& log;
    std::string name;
    Updatable* recruit = nullptr;
};
} // namespace

TEST(Observed, TwoWatchersSeeEveryChangeAndDieWithTheObject) {
    Log log;
    Observed other;
    auto* dying = new Observed;
    auto *first = new Logger(log, "first"), *second = new Logger(log, "second");
    dying->addObserver(*first);
    dying->addObserver(*second);
    other.addObserver(*second);
    dying->notifyChanged();
    EXPECT_TRUE(Observed(*dying).observers.empty()) << "a copy starts unwatched";
    delete dying;
    // The death ended the second watcher, which let go of the other object it watched.
    EXPECT_EQ(other.observerCount, 0);
    EXPECT_EQ(log, (Log{"first changed", "second changed", "first died", "second died"}));
}

TEST(Updatables, AGrenadeGoesOffWhenItsFuseDropsBelowZeroAndTheWalkGoesOn) {
    Log log;
    updateAll();
    Logger first(log, "first"), last(log, "last"), late(log, "late");
    auto* charge = new Grenade("Pressure Charge", "Thrown Weapons", {}, {}, {3, 7, 12, 20}, 0);
    charge->fuse = 1;
    charge->explodeHandler.bind(&first, &Logger::explode);
    std::unique_ptr<Item> clone(charge->clone());
    for (Updatable* u : std::initializer_list<Updatable*>{&first, charge, &last})
        addUpdatable(u);
    first.recruit = &late;
    updateAll();
    updateAll();
    EXPECT_EQ(log, (Log{"first", "last", "first", "Pressure Charge exploded", "last", "late"}))
        << "a new entry waits a round";
    EXPECT_EQ(updatables, (std::list<Updatable*>{&first, &last, &late})) << "the clone does not count down";
}
