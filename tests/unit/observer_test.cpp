// Change and death notification between observed objects and their watchers, and the aging walk
// of updateAll, checked by the order in which the handlers ran.
#include "rules/item.h"
#include "shell/observer.h"
#include "shell/updatable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
    void update(int amount) override {
        log.push_back(name + " " + std::to_string(amount));
        if (victim) removeUpdatable(victim);
        if (recruit) addUpdatable(recruit);
    }
    Log& log;
    std::string name;
    Updatable* victim = nullptr;
    Updatable* recruit = nullptr;
};

struct Blast {
    int onExplode(Grenade* g) {
        log.push_back(g->name + " exploded");
        delete g;
        return 0;
    }
    Log& log;
};

Grenade* armedGrenade(Blast& blast, int fuse) {
    auto* g = new Grenade("Pressure Charge", "Thrown Weapons", {}, {}, {3, 7, 12, 20}, 0);
    g->fuse = fuse;
    g->explodeHandler.bind(&blast, &Blast::onExplode);
    addUpdatable(g);
    return g;
}
} // namespace

TEST(Observed, TwoWatchersSeeChangesInOrderAndDieWithTheObject) {
    Log log;
    auto* object = new Observed;
    auto* first = new Watcher(log, "first");
    auto* second = new Watcher(log, "second");
    object->addObserver(*first);
    object->addObserver(*second);
    EXPECT_EQ(object->observerCount, 2);
    EXPECT_EQ(object->observers.front(), first);
    object->notifyChanged();
    EXPECT_EQ(log, (Log{"first changed", "second changed"}));

    Observed copy(*object);
    EXPECT_EQ(copy.observerCount, 0);
    EXPECT_TRUE(copy.observers.empty());

    log.clear();
    delete object;
    EXPECT_EQ(log, (Log{"first died", "second died"}));
}

TEST(Observed, ClosedWatcherIsForgottenAndDeathReachesEveryWatchedObject) {
    Log log;
    Observed one, other;
    auto* closed = new Watcher(log, "closed");
    auto* both = new Watcher(log, "both");
    one.addObserver(*closed);
    one.addObserver(*both);
    auto* dying = new Observed;
    dying->addObserver(*both);
    other.addObserver(*both);

    delete closed;
    EXPECT_EQ(one.observerCount, 1);
    one.notifyChanged();
    EXPECT_EQ(log, (Log{"closed died", "both changed"}));

    // The death of one watched object ends the watcher, which lets go of the others.
    delete dying;
    EXPECT_EQ(log.back(), "both died");
    EXPECT_EQ(one.observerCount, 0);
    EXPECT_EQ(other.observerCount, 0);
    EXPECT_TRUE(other.observers.empty());
    other.notifyChanged();
    EXPECT_EQ(log.size(), 3u);
}

TEST(Updatables, RemovalsDuringTheWalkSkipTheRemovedAndAdditionsWaitARound) {
    Log log;
    Ticker first(log, "first"), second(log, "second"), third(log, "third");
    Ticker late(log, "late");
    removeUpdatable(&late);
    removeUpdatable(&late);
    first.victim = &second;
    first.recruit = &late;
    updateAll();
    EXPECT_EQ(log, (Log{"first 1", "third 1"}));
    EXPECT_EQ(updatables, (std::list<Updatable*>{&first, &third, &late}));
    first.recruit = nullptr;
    log.clear();
    updateAll();
    EXPECT_EQ(log, (Log{"first 1", "third 1", "late 1"}));
}

TEST(Updatables, GrenadeGoesOffOnceItsFuseDropsBelowZeroAndRemovesItself) {
    Log log;
    Blast blast{log};
    updateAll();
    Ticker before(log, "before");
    armedGrenade(blast, 1);
    Ticker after(log, "after");
    updateAll();
    EXPECT_EQ(log, (Log{"before 1", "after 1"}));
    log.clear();
    updateAll();
    EXPECT_EQ(log, (Log{"before 1", "Pressure Charge exploded", "after 1"}));
    EXPECT_EQ(updatables, (std::list<Updatable*>{&before, &after}));
}

TEST(Updatables, GrenadeWithFuseZeroGoesOffAtTheFirstRoundAndItsCloneWaits) {
    Log log;
    Blast blast{log};
    Grenade* g = armedGrenade(blast, 0);
    Item* clone = g->clone();
    EXPECT_EQ(static_cast<Grenade*>(clone)->fuse, 0);
    EXPECT_TRUE(static_cast<Grenade*>(clone)->explodeHandler == g->explodeHandler);
    updateAll();
    EXPECT_EQ(log, (Log{"Pressure Charge exploded"}));
    EXPECT_TRUE(updatables.empty()) << "the clone is not counting down";
    delete clone;
}
