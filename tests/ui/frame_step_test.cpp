// The frame loop's input dispatch, driven with real injected input: clicks, drags and drops,
// hover, focus, keys, wheel, and windows that die while the pointer rests on them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>

#include "platform/glfw2.h"
#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/frame_step.h"
#include "toolkit/input_state.h"

using namespace ui;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class FrameStepTest : public UiTest {
  protected:
    EventLog log;
    Probe* a = nullptr; // (10, 10) to (30, 30)
    Probe* b = nullptr; // (50, 10) to (70, 30)

    void SetUp() override {
        UiTest::SetUp();
        a = new Probe(root, "A", 10, 10, 20, 20, &log);
        b = new Probe(root, "B", 50, 10, 20, 20, &log);
    }

    // The log's entries that contain one of the words.
    EventLog only(std::initializer_list<std::string> words) const {
        EventLog out;
        for (const auto& e : log)
            if (std::any_of(words.begin(), words.end(),
                            [&](auto& w) { return e.find(w) != std::string::npos; }))
                out.push_back(e);
        return out;
    }

    Probe* item(Window* in, bool movable, bool dragDrop) {
        Probe* p = new Probe(in, "item", 2, 2, 10, 5, &log);
        p->movable = movable;
        p->dragDrop = dragDrop;
        return p;
    }

    // A handler that deletes a window at one place of the frame step, and what the log shows after
    // it: the step must go on without touching the dead.
    struct Deletion {
        const char* reactor;
        const char* event;
        const char* victim;
        std::function<void()> script;
        std::vector<std::string> after; // the log behind the deletion, without moves and deaths
        bool movable = false;
    };

    // On a stage that covers the screen: a panel (10, 50)-(50, 70) holding the entry "item"
    // (12, 52)-(22, 57), which can be dragged, and "next" (22, 52)-(32, 57) beside it; "other" at
    // (60, 50)-(80, 70) takes drops.
    void run(const Deletion& d) {
        SCOPED_TRACE(std::string(d.reactor) + " " + d.event + " deletes " + d.victim);
        Probe* stage = new Probe(root, "stage", 0, 0, 100, 100, &log);
        Probe* panel = new Probe(stage, "panel", 10, 50, 40, 20, &log);
        Probe* entry = item(panel, d.movable, true);
        std::map<std::string, Probe*> named{{"stage", stage},
                                            {"panel", panel},
                                            {"item", entry},
                                            {"next", new Probe(panel, "next", 12, 2, 10, 5, &log)},
                                            {"other", new Probe(stage, "other", 60, 50, 20, 20, &log)}};
        named[d.reactor]->deleteOn = d.event;
        named[d.reactor]->victim = named[d.victim];
        moveTo(5, 95);
        log.clear();
        d.script();
        std::string reaction = std::string(d.reactor) + ":" + d.event;
        auto at = std::ranges::find_if(log, [&](auto& e) { return e.starts_with(reaction); });
        ASSERT_NE(at, log.end()) << "the handler never ran";
        ASSERT_NE(at + 1, log.end());
        EXPECT_EQ(at[1], std::string(d.victim) + ":destroyed");
        EventLog after;
        std::copy_if(at + 2, log.end(), std::back_inserter(after), [](auto& e) {
            return !e.ends_with(":destroyed") && e.find(":move") == std::string::npos;
        });
        EXPECT_EQ(after, d.after);
        EXPECT_EQ(draggedWindow, nullptr);
        delete stage;
    }
};

TEST_F(FrameStepTest, AClickNeedsPressAndReleaseOnTheSameWindowInTwoFrames) {
    click(20, 20);
    EXPECT_THAT(only({"click", "focus"}), ElementsAre("A:focus", "A:left click"));
    EXPECT_EQ(focusWindow, a);
    log.clear();
    moveTo(20, 20);
    press();
    moveTo(60, 20);
    release();
    // A press and a release that fall into one swap are not seen at all.
    platform::script::setButton(0, true);
    platform::script::setButton(0, false);
    settle();
    EXPECT_THAT(only({"click", "focus"}), IsEmpty());
    EXPECT_EQ(pressTarget, nullptr);
}

TEST_F(FrameStepTest, ADragStartsBeyondThreePixelsOnlyForAWindowThatCanBeDragged) {
    movePixels(200, 150);
    press();
    movePixels(260, 190);
    EXPECT_EQ(draggedWindow, nullptr) << "neither flag";
    release();
    log.clear();
    a->movable = true;
    movePixels(200, 150);
    press();
    movePixels(203, 150);
    EXPECT_EQ(draggedWindow, nullptr) << "exactly 3 pixels";
    movePixels(202, 152);
    EXPECT_EQ(draggedWindow, nullptr) << "8 squared pixels";
    movePixels(203, 151);
    EXPECT_EQ(draggedWindow, a) << "10 squared pixels";
    EXPECT_EQ(dragOrigin, root);
    EXPECT_EQ(pressTarget, nullptr);
    release();
    EXPECT_THAT(only({"click"}), IsEmpty());
}

TEST_F(FrameStepTest, AMovableWindowIsLiftedOutWhileItsGhostFollowsAndComesBackLastAtItsNewPlace) {
    a->movable = true;
    a->backColour[0] = 1;
    a->backColour[1] = a->backColour[2] = 0;
    Probe* c = new Probe(root, "C", 80, 80, 5, 5, &log);
    moveTo(15, 15);
    press();
    movePixels(toPixelX(15) + 4, toPixelY(15));
    float startX = logicalX, startY = logicalY;
    moveTo(40, 60);
    moveTo(45, 65);
    ASSERT_EQ(draggedWindow, a);
    EXPECT_EQ(std::count(root->children.begin(), root->children.end(), a), 0);
    EXPECT_EQ(a->parent, root);
    // The ghost keeps the grab offset, at 62.5% opacity; nothing is left at the old place.
    EXPECT_TRUE(near(pixel(45, 65), {159, 0, 0}, 3)) << pixel(45, 65);
    EXPECT_EQ(pixel(15, 15), (Rgb{0, 0, 0}));
    release();
    EXPECT_NEAR(a->x, 10 + logicalX - startX, 1e-4);
    EXPECT_NEAR(a->y, 10 + logicalY - startY, 1e-4);
    EXPECT_THAT(root->children, ElementsAre(b, c, a));
}

TEST_F(FrameStepTest, ADropIsAskedOfTheWindowUnderThePointerAndAnsweredToTheOrigin) {
    Probe* entry = item(a, false, true);
    b->accept = true;
    drag(15, 15, 60, 20);
    b->accept = false;
    drag(15, 15, 60, 20);
    EXPECT_THAT(only({"drag", "drop", "accepts"}),
                ElementsAre("A:drag start item", "B:accepts item?", "A:drop accepted item",
                            "A:drag start item", "B:accepts item?", "A:drop refused item"));
    EXPECT_EQ(entry->x, 2) << "a window without movable stays";
    EXPECT_EQ(draggedWindow, nullptr);
    EXPECT_EQ(dragOrigin, nullptr);

    // A drop raises the target only when its order is not fixed.
    b->accept = true;
    a->raise();
    drag(15, 15, 60, 20);
    EXPECT_EQ(root->children.back(), a);
    b->fixedOrder = false;
    drag(15, 15, 60, 20);
    EXPECT_EQ(root->children.back(), b);
}

TEST_F(FrameStepTest, ARefusedDropStillLeavesAMovableWindowAtItsNewPlaceAsLastChild) {
    Probe* panel = new Probe(root, "panel", 0, 50, 40, 40, &log);
    Probe* card = item(panel, true, true);
    new Probe(panel, "other", 20, 20, 5, 5, &log);
    drag(5, 54, 60, 20); // onto B, which refuses
    EXPECT_THAT(only({"drop", "accepts"}), ElementsAre("B:accepts item?", "panel:drop refused item"));
    EXPECT_EQ(panel->children.back(), card);
    EXPECT_NEAR(card->x, 57, 0.5);
    EXPECT_NEAR(card->y, -32, 0.5);
}

TEST_F(FrameStepTest, AnOriginThatDiesDuringADragIsNeverCalledAndTakesItsLiftedChildWithIt) {
    for (bool movable : {false, true}) {
        Probe* panel = new Probe(root, "panel", 0, 50, 40, 40, &log);
        item(panel, movable, !movable);
        moveTo(5, 54);
        press();
        moveTo(20, 70);
        ASSERT_EQ(dragOrigin, panel);
        delete panel;
        EXPECT_EQ(draggedWindow, nullptr);
        EXPECT_EQ(dragOrigin, nullptr);
        release();
    }
    EXPECT_THAT(only({"drop", "accepts", "item:destroyed"}), ElementsAre("item:destroyed", "item:destroyed"));
}

TEST_F(FrameStepTest, UnderAStillPointerADeletedOrNewWindowGetsNothingUntilThePointerMoves) {
    moveTo(20, 20);
    Probe* top = new Probe(root, "top", 10, 10, 20, 20, &log); // exactly over A
    click(20, 20);
    EXPECT_THAT(only({"click"}), ElementsAre("A:left click")) << "the new window is not hovered yet";
    movePixels(toPixelX(20) + 1, toPixelY(20));
    ASSERT_EQ(hoverWindow, top);
    delete top;
    EXPECT_EQ(hoverWindow, nullptr);
    press();
    release();
    EXPECT_THAT(only({"click"}), ElementsAre("A:left click"));
    movePixels(toPixelX(20), toPixelY(20));
    EXPECT_EQ(hoverWindow, a);
}

TEST_F(FrameStepTest, HoverChangesLeaveThenEnterAndOnlyTheLastStepOfAFrameReachesTheHoverWindow) {
    moveTo(20, 20);
    int x = toPixelX(20), y = toPixelY(20);
    platform::script::movePointer(x + 5, y);
    platform::script::movePointer(x + 7, y + 3);
    settle();
    EXPECT_EQ(mouseDeltaX, 0) << "used up by the frame";
    moveTo(60, 20);
    EXPECT_THAT(only({"enter", "leave", "move"}), ElementsAre("A:enter", "A:move 2,3", "A:leave", "B:enter"));
}

TEST_F(FrameStepTest, TheWheelAndTheRightAndThirdButtonsGoToTheHoverWindow) {
    wheel(2); // no hover window yet
    EXPECT_EQ(wheelPosition, 2);
    moveTo(20, 20);
    wheel(-3);
    press(1);
    release(1);
    EXPECT_EQ(pressTarget, a) << "the right release leaves the press target";
    press(2);
    release(2);
    press(1);
    moveTo(60, 20);
    release(1);
    EXPECT_THAT(only({"wheel", "click", "focus", "down", "up"}),
                ElementsAre("A:wheel -3", "A:right click", "A:down 2", "A:up 2"));
}

TEST_F(FrameStepTest, FocusIsLostAtThePressAndTakenAtTheRelease) {
    click(20, 20);
    log.clear();
    moveTo(60, 20);
    press();
    EXPECT_EQ(focusWindow, a);
    release();
    EXPECT_EQ(focusWindow, b);
    EXPECT_THAT(only({"focus"}), ElementsAre("A:focus lost", "B:focus"));
}

TEST_F(FrameStepTest, KeysGoToTheFocusWindowOnceAndAreDroppedWithoutOne) {
    moveTo(20, 20);
    tap('Q'); // no focus window: not even the hover window hears it, now or after the next click
    EXPECT_THAT(only({"key"}), IsEmpty());
    click(20, 20);
    holdKey('W');
    keyCallback('W', 1); // the window system's repeats
    keyCallback('W', 1);
    frame();
    click(60, 20); // the focus moves while W is held
    releaseKey('W');
    tap(platform::KEY_ENTER);
    EXPECT_THAT(only({"key"}), ElementsAre("A:key 87", "B:key 294"));
    EXPECT_FALSE(keyDown['W']);
}

// Every place of the frame step where a handler runs, each with a handler that deletes its own
// window, its parent, the window the pointer enters or the dragged window.
TEST_F(FrameStepTest, AnyHandlerMayDeleteItsWindowItsParentTheEnteredOrTheDraggedWindow) {
    auto itemThenNext = [this] {
        moveTo(17, 54.5f);
        moveTo(27, 54.5f);
    };
    auto wiggle = [this] {
        moveTo(17, 54.5f);
        movePixels(toPixelX(17) + 1, toPixelY(54.5f));
    };
    // Press near the item's right edge and pull it past the threshold: 4 pixels stay on the item,
    // 8 reach "next", so that the window hit before the drag start is the one that dies.
    auto pull = [this](int pixels) {
        return [this, pixels] {
            moveTo(21.5f, 54.5f);
            press();
            movePixels(toPixelX(21.5f) + pixels, toPixelY(54.5f));
            release();
        };
    };
    auto dropOnOther = [this] { drag(17, 54.5f, 70, 60, 1); };
    auto clickItem = [this] { click(17, 54.5f); };
    auto pressAndRelease = [this](int button) {
        return [this, button] {
            moveTo(17, 54.5f);
            press(button);
            release(button);
        };
    };
    auto wheelTwice = [this] {
        moveTo(17, 54.5f);
        wheel(1);
        wheel(1);
    };
    auto twoKeysInAFrame = [this] {
        click(17, 54.5f);
        platform::script::setKey('A', true);
        platform::script::setKey('B', true);
        settle();
        platform::script::setKey('A', false);
        platform::script::setKey('B', false);
        settle();
    };
    auto clickItemThenNext = [this] {
        click(17, 54.5f);
        click(27, 54.5f);
    };
    Deletion cases[] = {
        {"item", "leave", "next", itemThenNext, {"panel:enter"}},
        {"item", "leave", "panel", itemThenNext, {"stage:enter"}},
        {"item", "leave", "item", itemThenNext, {"next:enter"}},
        {"next", "enter", "next", itemThenNext, {}},
        {"next", "enter", "panel", itemThenNext, {}},
        {"item", "move", "item", wiggle, {}},
        {"panel", "drag start", "item", pull(4), {"panel:enter"}},
        {"panel", "drag start", "panel", pull(4), {"stage:enter"}},
        {"panel",
         "drag start",
         "next",
         pull(8),
         {"item:leave", "panel:enter", "panel:accepts item?", "panel:drop refused item"}},
        {"other", "accepts", "item", dropOnOther, {}},
        {"other", "accepts", "other", dropOnOther, {"panel:drop refused item"}},
        {"other", "accepts", "panel", dropOnOther, {}},
        {"panel", "drop refused", "panel", dropOnOther, {}},
        {"panel", "drop refused", "other", dropOnOther, {}},
        {"panel", "drop refused", "item", dropOnOther, {}, true},
        {"item", "focus", "item", clickItem, {}},
        {"item", "left click", "panel", clickItem, {}},
        {"item", "right click", "item", pressAndRelease(1), {}},
        {"item", "down", "panel", pressAndRelease(2), {}},
        {"item", "up", "item", pressAndRelease(2), {}},
        {"item", "wheel", "item", wheelTwice, {}},
        {"item", "key", "item", twoKeysInAFrame, {}},
        {"item", "focus lost", "item", clickItemThenNext, {"next:focus", "next:left click"}},
    };
    for (const Deletion& d : cases)
        run(d);
}

TEST_F(FrameStepTest, ABalloonGoesOnALeftOrRightPressAndOnAHoverChangeButNotOnTheThirdButton) {
    moveTo(20, 20);
    for (int button : {2, 0, 1}) {
        new Balloon("tip", 1.5f);
        press(button);
        release(button);
        EXPECT_EQ(balloonWindow != nullptr, button == 2) << "button " << button;
    }
    new Balloon("tip", 1.5f);
    movePixels(toPixelX(20) + 1, toPixelY(20));
    EXPECT_NE(balloonWindow, nullptr) << "a move within the window keeps it";
    moveTo(60, 20);
    EXPECT_EQ(balloonWindow, nullptr);
}

TEST_F(FrameStepTest, TheLoopEndsWhenTheWindowIsClosedOrTheRootGivesUp) {
    struct Quitter : Window {
        Quitter() : Window(nullptr, 0, 0, 100, 100, "") {}
        bool afterDraw() override { return false; }
    } quitter;
    EXPECT_FALSE(frameStep(&quitter));
    EXPECT_FALSE(quitter.visible);
    platform::script::requestClose();
    EXPECT_TRUE(frameStep(root)) << "the close arrives with the swap";
    EXPECT_FALSE(frameStep(root));
}

} // namespace
