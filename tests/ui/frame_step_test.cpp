// The frame loop's input dispatch, driven with real injected input: clicks, drags and drops,
// hover, focus, keys, wheel, and windows that die while the pointer rests on them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/glfw2.h"
#include "shell/frame_step.h"
#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/input_state.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

class FrameStepTest : public UiTest {
  protected:
    EventLog log;
    Probe* a = nullptr;
    Probe* b = nullptr;

    void SetUp() override {
        UiTest::SetUp();
        a = new Probe(root, "A", 10, 10, 20, 20, &log);
        b = new Probe(root, "B", 50, 10, 20, 20, &log);
    }

    // Only the entries that match one of the words.
    EventLog only(std::initializer_list<std::string> words) const {
        EventLog out;
        for (const auto& e : log)
            for (const auto& w : words)
                if (e.find(w) != std::string::npos) {
                    out.push_back(e);
                    break;
                }
        return out;
    }
};

TEST_F(FrameStepTest, AClickNeedsPressAndReleaseOnTheSameWindow) {
    click(20, 20);
    EXPECT_THAT(only({"click", "focus"}), ElementsAre("A:focus", "A:left click"));
    EXPECT_EQ(focusWindow, a);

    log.clear();
    moveTo(20, 20);
    press();
    moveTo(60, 20);
    release();
    EXPECT_THAT(only({"click", "focus"}), ElementsAre()) << "press on A and release on B does nothing";
    EXPECT_EQ(pressTarget, nullptr);
}

TEST_F(FrameStepTest, PressAndReleaseWithinOneSwapAreNotSeen) {
    moveTo(20, 20);
    platform::script::setButton(0, true);
    platform::script::setButton(0, false);
    settle();
    EXPECT_THAT(only({"click"}), ElementsAre());
    EXPECT_FALSE(leftDown);
}

TEST_F(FrameStepTest, ADragStartsBeyondThreePixelsAndNotAtExactlyThree) {
    a->movable = true;
    movePixels(200, 150);
    press();
    movePixels(203, 150);
    EXPECT_EQ(draggedWindow, nullptr) << "exactly 3 pixels is still a click";
    movePixels(202, 152);
    EXPECT_EQ(draggedWindow, nullptr) << "8 squared pixels is below the threshold";
    movePixels(203, 151);
    EXPECT_EQ(draggedWindow, a) << "10 squared pixels starts the drag";
    EXPECT_EQ(dragOrigin, root);
    EXPECT_EQ(pressTarget, nullptr);
    release();
    EXPECT_THAT(only({"click"}), ElementsAre()) << "a drag is no click";
}

TEST_F(FrameStepTest, AWindowWithNeitherFlagIsNeverDragged) {
    movePixels(200, 150);
    press();
    movePixels(260, 190);
    EXPECT_EQ(draggedWindow, nullptr);
    release();
    EXPECT_EQ(a->x, 10);
}

TEST_F(FrameStepTest, AMovableWindowLeavesItsParentWhileDraggedAndComesBackLastAtItsNewPlace) {
    a->movable = true;
    Probe* c = new Probe(root, "C", 80, 80, 5, 5, &log);
    moveTo(15, 15);
    press();
    movePixels(toPixelX(15) + 4, toPixelY(15));
    // The window keeps the offset to the pointer that it had when the drag started.
    float startX = logicalX, startY = logicalY;
    moveTo(35, 45);
    release();
    EXPECT_EQ(draggedWindow, nullptr);
    EXPECT_NEAR(a->x, 10 + logicalX - startX, 1e-4);
    EXPECT_NEAR(a->y, 10 + logicalY - startY, 1e-4);
    ASSERT_EQ(root->children.size(), 3u);
    EXPECT_EQ(root->children.back(), a) << "the moved window is raised";
    EXPECT_EQ(root->children[1], c);
    EXPECT_EQ(a->parent, root);
}

TEST_F(FrameStepTest, WhileDraggedAMovableWindowIsOutOfTheTreeAndItsGhostFollows) {
    a->movable = true;
    a->backColour[0] = 1;
    a->backColour[1] = a->backColour[2] = 0;
    moveTo(15, 15);
    press();
    movePixels(toPixelX(15) + 4, toPixelY(15));
    moveTo(40, 60);
    moveTo(45, 65);
    ASSERT_EQ(draggedWindow, a);
    EXPECT_EQ(std::count(root->children.begin(), root->children.end(), a), 0);
    EXPECT_EQ(a->parent, root) << "the parent field survives for the drop";
    // The ghost stands at the pointer, with the grab offset of about (-5.4, -5), at 62.5% opacity.
    Rgb ghost = pixel(45, 65);
    EXPECT_NEAR(ghost.r, 159, 3);
    EXPECT_EQ(ghost.g, 0);
    EXPECT_EQ(pixel(15, 15), (Rgb{0, 0, 0})) << "nothing is left at the old place";
    release();
}

TEST_F(FrameStepTest, ADragDropWindowStaysInPlaceAndTheDropIsAskedOfTheWindowUnderThePointer) {
    Probe* item = new Probe(a, "item", 2, 2, 10, 5, &log);
    item->dragDrop = true;
    b->accept = true;
    drag(15, 15, 60, 20);
    EXPECT_THAT(only({"drag", "drop", "accepts"}),
                ElementsAre("A:drag start item", "B:accepts item?", "A:drop accepted item"));
    EXPECT_EQ(item->parent, a);
    EXPECT_EQ(item->x, 2) << "a window without movable does not move";
    EXPECT_EQ(draggedWindow, nullptr);
    EXPECT_EQ(dragOrigin, nullptr);

    log.clear();
    b->accept = false;
    drag(15, 15, 60, 20);
    EXPECT_THAT(only({"drag", "drop", "accepts"}),
                ElementsAre("A:drag start item", "B:accepts item?", "A:drop refused item"));
}

TEST_F(FrameStepTest, APlainWindowRefusesEveryDropUnlessItsHandlerSaysYes) {
    struct Judge {
        int calls = 0;
        int yes(Window*) {
            ++calls;
            return 1;
        }
    } judge;
    Window* plain = new Window(root, 40, 40, 10, 10, "");
    Probe* item = new Probe(a, "item", 2, 2, 10, 5, &log);
    item->dragDrop = true;
    drag(15, 15, 45, 45);
    EXPECT_THAT(only({"drop"}), ElementsAre("A:drop refused item"));

    log.clear();
    plain->acceptsDropHandler.bind(&judge, &Judge::yes);
    drag(15, 15, 45, 45);
    EXPECT_THAT(only({"drop"}), ElementsAre("A:drop accepted item"));
    EXPECT_EQ(judge.calls, 1);
}

TEST_F(FrameStepTest, ARefusedDropStillLeavesAMovableWindowAtItsNewPlaceAsLastChild) {
    Probe* panel = new Probe(root, "panel", 0, 50, 40, 40, &log);
    Probe* card = new Probe(panel, "card", 5, 5, 10, 10, &log);
    new Probe(panel, "other", 20, 20, 5, 5, &log);
    card->movable = true;
    card->dragDrop = true;
    b->accept = false;
    drag(10, 60, 60, 20); // onto B, which refuses
    EXPECT_THAT(only({"drop", "accepts"}), ElementsAre("B:accepts card?", "panel:drop refused card"));
    EXPECT_EQ(card->parent, panel);
    EXPECT_EQ(panel->children.back(), card);
    EXPECT_NEAR(card->x, 55, 0.5);
    EXPECT_NEAR(card->y, -35, 0.5);
}

TEST_F(FrameStepTest, ADropRaisesTheTargetOnlyWhenItsOrderIsNotFixed) {
    Probe* item = new Probe(b, "item", 2, 2, 5, 5, &log);
    item->dragDrop = true;
    a->accept = true;
    drag(55, 15, 15, 15);
    EXPECT_EQ(root->children.back(), b) << "A keeps its place: fixedOrder";
    a->fixedOrder = false;
    drag(55, 15, 15, 15);
    EXPECT_EQ(root->children.back(), a);
}

TEST_F(FrameStepTest, AnOriginThatDiesDuringADragIsNeverCalledAtTheDrop) {
    Probe* item = new Probe(a, "item", 2, 2, 10, 5, &log);
    item->dragDrop = true;
    moveTo(15, 15);
    press();
    moveTo(30, 30);
    moveTo(60, 20);
    ASSERT_EQ(dragOrigin, a);
    delete a; // takes the dragged entry with it
    EXPECT_EQ(draggedWindow, nullptr);
    EXPECT_EQ(dragOrigin, nullptr);
    release();
    EXPECT_THAT(only({"drop", "accepts"}), ElementsAre());

    // A movable window lifted out of its parent dies with the parent too.
    Probe* panel = new Probe(root, "panel", 0, 50, 40, 40, &log);
    Probe* card = new Probe(panel, "card", 5, 5, 10, 10, &log);
    card->movable = true;
    moveTo(10, 60);
    press();
    moveTo(20, 70);
    ASSERT_EQ(draggedWindow, card);
    delete panel;
    EXPECT_EQ(draggedWindow, nullptr);
    release();
    EXPECT_THAT(only({"card:destroyed"}), ElementsAre("card:destroyed"));
}

TEST_F(FrameStepTest, AWindowDeletedUnderAStillPointerLeavesNoHoverUntilThePointerMoves) {
    Probe* top = new Probe(root, "top", 10, 10, 20, 20, &log); // exactly over A
    moveTo(20, 20);
    ASSERT_EQ(hoverWindow, top);
    delete top;
    EXPECT_EQ(hoverWindow, nullptr);
    press();
    release();
    EXPECT_THAT(only({"click", "focus"}), ElementsAre()) << "A gets no click until the pointer moves";
    movePixels(toPixelX(20) + 1, toPixelY(20));
    EXPECT_EQ(hoverWindow, a);
    EXPECT_THAT(only({"enter"}), ElementsAre("top:enter", "A:enter"));
}

TEST_F(FrameStepTest, ANewWindowUnderAStillPointerGetsNoClickUntilThePointerMoves) {
    moveTo(20, 20);
    Probe* top = new Probe(root, "top", 10, 10, 20, 20, &log);
    press();
    release();
    EXPECT_THAT(only({"click"}), ElementsAre("A:left click"));
    movePixels(toPixelX(20) + 1, toPixelY(20));
    EXPECT_EQ(hoverWindow, top);
}

TEST_F(FrameStepTest, HoverChangesCallLeaveThenEnterAndMovesGoToTheHoverWindow) {
    moveTo(20, 20);
    movePixels(toPixelX(20) + 2, toPixelY(20) + 1);
    moveTo(60, 20);
    EXPECT_THAT(only({"enter", "leave", "move"}), ElementsAre("A:enter", "A:move 2,1", "A:leave", "B:enter"));
}

TEST_F(FrameStepTest, TwoPointerReportsInOneFrameLeaveOnlyTheLastStep) {
    moveTo(20, 20);
    log.clear();
    int x = toPixelX(20), y = toPixelY(20);
    platform::script::movePointer(x + 5, y);
    platform::script::movePointer(x + 7, y + 3);
    settle();
    EXPECT_THAT(only({"move"}), ElementsAre("A:move 2,3"));
    EXPECT_EQ(mouseX, x + 7);
    EXPECT_EQ(mouseDeltaX, 0) << "the frame step uses the deltas up";
}

TEST_F(FrameStepTest, TheWheelTurnsForTheHoverWindowByTheChange) {
    wheel(2);
    EXPECT_THAT(only({"wheel"}), ElementsAre()) << "no hover window at (0, 0)";
    EXPECT_EQ(wheelPosition, 2);
    moveTo(20, 20);
    wheel(-3);
    wheel(1);
    EXPECT_THAT(only({"wheel"}), ElementsAre("A:wheel -3", "A:wheel 1"));
    EXPECT_EQ(wheelPosition, 0);
}

TEST_F(FrameStepTest, TheRightButtonClicksWithoutFocusAndTheThirdGoesDownAndUp) {
    moveTo(20, 20);
    press(1);
    EXPECT_EQ(pressTarget, a);
    release(1);
    EXPECT_EQ(pressTarget, a) << "the right release leaves the press target";
    press(2);
    release(2);
    EXPECT_THAT(only({"click", "focus", "down", "up"}), ElementsAre("A:right click", "A:down 2", "A:up 2"));
    EXPECT_EQ(focusWindow, nullptr);
    press(1);
    moveTo(60, 20);
    release(1);
    EXPECT_THAT(only({"right"}), ElementsAre("A:right click")) << "press on A, release on B";
}

TEST_F(FrameStepTest, FocusIsLostAtThePressAndTakenAtTheRelease) {
    click(20, 20);
    ASSERT_EQ(focusWindow, a);
    log.clear();
    moveTo(60, 20);
    press();
    EXPECT_THAT(only({"focus"}), ElementsAre("A:focus lost"));
    EXPECT_EQ(focusWindow, a) << "the focus stays until the release";
    release();
    EXPECT_EQ(focusWindow, b);
    EXPECT_THAT(only({"focus"}), ElementsAre("A:focus lost", "B:focus"));
}

TEST_F(FrameStepTest, KeysGoToTheFocusWindowOnceAndAreDroppedWithoutOne) {
    tap('Q');
    EXPECT_THAT(only({"key"}), ElementsAre()) << "no focus window: the key is thrown away";
    EXPECT_TRUE(keyQueue.empty());

    click(20, 20);
    holdKey('W');
    // The window system repeats a held key; only the first press counts.
    keyCallback('W', 1);
    keyCallback('W', 1);
    frame();
    releaseKey('W');
    tap(platform::KEY_ENTER);
    EXPECT_THAT(only({"key"}), ElementsAre("A:key 87", "A:key 294"));
    EXPECT_FALSE(keyDown['W']);
}

TEST_F(FrameStepTest, AKeyHeldWhileTheFocusChangesIsNotRepeated) {
    click(20, 20);
    holdKey('E');
    click(60, 20);
    releaseKey('E');
    EXPECT_THAT(only({"key"}), ElementsAre("A:key 69"));
}

TEST_F(FrameStepTest, ACloseButtonMayDeleteItsOwnDialogue) {
    struct Closer {
        Window* dialogue;
        int close(Window*) {
            delete dialogue;
            return 0;
        }
    };
    Probe* dialogue = new Probe(root, "dialogue", 10, 40, 30, 20, &log);
    Probe* button = new Probe(dialogue, "ok", 10, 10, 8, 4, &log);
    Closer closer{dialogue};
    button->leftClickHandler.bind(&closer, &Closer::close);
    click(24, 52);
    EXPECT_THAT(only({"destroyed", "click"}), ElementsAre("ok:left click", "dialogue:destroyed", "ok:destroyed"));
    EXPECT_EQ(hoverWindow, nullptr);
    EXPECT_EQ(focusWindow, nullptr);
    ASSERT_EQ(root->children.size(), 2u);
    frame(3); // and the loop goes on drawing
}

TEST_F(FrameStepTest, ABalloonGoesAwayOnAPressAndWhenTheHoverWindowChanges) {
    moveTo(20, 20);
    new Balloon("tip", 1.5f);
    ASSERT_NE(balloonWindow, nullptr);
    press(1);
    EXPECT_EQ(balloonWindow, nullptr);
    release(1);
    new Balloon("tip", 1.5f);
    moveTo(60, 20);
    EXPECT_EQ(balloonWindow, nullptr);
}

TEST_F(FrameStepTest, TheLoopEndsWhenTheWindowIsClosedOrTheRootGivesUp) {
    class Quitter : public Window {
      public:
        Quitter() : Window(nullptr, 0, 0, 100, 100, "") {}
        bool afterDraw() override { return false; }
    };
    Quitter quitter;
    EXPECT_FALSE(frameStep(&quitter));
    EXPECT_FALSE(quitter.visible);
    EXPECT_FALSE(frameStep(&quitter)) << "an invisible root is not drawn and ends the loop again";

    frame();
    platform::script::requestClose();
    EXPECT_TRUE(frameStep(root)) << "the close arrives with the swap";
    EXPECT_FALSE(frameStep(root));
}

TEST_F(FrameStepTest, RegisteringThePointerCallbackReportsThePointerAtOnce) {
    platform::script::movePointer(300, 200);
    frame();
    mouseX = mouseY = 0;
    platform::glfwSetMousePosCallback(mousePosCallback);
    EXPECT_EQ(mouseX, 300);
    EXPECT_EQ(mouseDeltaY, 200);
    frame();
    EXPECT_EQ(hoverWindow, a) << "the first frame finds the hover window";
}

} // namespace
