// The window tree without a display: construction and destruction rules, hit testing, raising,
// adding and removing children, and delegates that rebind or delete from inside their call.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "toolkit/input_state.h"
#include "toolkit/window.h"

namespace {

struct Counter {
    int calls = 0;
    Window* last = nullptr;
    int count(Window* w) {
        ++calls;
        last = w;
        return 7;
    }
};

class WindowTree : public ::testing::Test {
  protected:
    void SetUp() override { resetInputState(); }
    void TearDown() override { resetInputState(); }
    Window root{nullptr, 0, 0, 100, 100, ""};
};

TEST_F(WindowTree, AChildJoinsItsParentLastAndTakesItsFontSizeAndOpacity) {
    root.fontSize = 2.5f;
    root.alpha = 0.5f;
    Counter added;
    root.childAddedHandler.bind(&added, &Counter::count);
    Window* a = new Window(&root, 1, 2, 3, 4, "a");
    Window* b = new Window(&root, 0, 0, 1, 1, "");
    EXPECT_THAT(root.children, ::testing::ElementsAre(a, b));
    EXPECT_EQ(a->parent, &root);
    EXPECT_EQ(a->fontSize, 2.5f);
    EXPECT_EQ(a->alpha, 0.5f);
    EXPECT_EQ(a->value, "a");
    EXPECT_EQ(added.calls, 0) << "the constructor's link fires no childAddedHandler";
    EXPECT_TRUE(a->fixedOrder);
    EXPECT_FALSE(a->movable || a->dragDrop);
    EXPECT_EQ(a->backColour[0], 0.7f);
    EXPECT_EQ(a->borderColour[3], 1.0f);
}

TEST_F(WindowTree, AddAndRemoveChildFireTheirHandlersAndLeaveTheParentFieldAsTheSpecialCasesSay) {
    Window other(nullptr, 0, 0, 10, 10, "");
    Window* child = new Window(&root, 0, 0, 5, 5, "");
    Counter added, removed;
    root.childRemovedHandler.bind(&removed, &Counter::count);
    other.childAddedHandler.bind(&added, &Counter::count);

    root.removeChild(child);
    EXPECT_TRUE(root.children.empty());
    EXPECT_EQ(child->parent, &root) << "removeChild does not clear the parent field";
    EXPECT_EQ(removed.last, child);

    root.removeChild(child); // not a child any more: the handler still fires
    EXPECT_EQ(removed.calls, 2);

    other.addChild(child);
    EXPECT_EQ(child->parent, &other);
    EXPECT_EQ(added.calls, 1);
    EXPECT_THAT(other.children, ::testing::ElementsAre(child));
}

TEST_F(WindowTree, RaiseMovesAWindowToTheFrontWithoutHandlers) {
    Window* a = new Window(&root, 0, 0, 5, 5, "");
    Window* b = new Window(&root, 0, 0, 5, 5, "");
    Window* c = new Window(&root, 0, 0, 5, 5, "");
    Counter handler;
    root.childAddedHandler.bind(&handler, &Counter::count);
    root.childRemovedHandler.bind(&handler, &Counter::count);
    a->raise();
    EXPECT_THAT(root.children, ::testing::ElementsAre(b, c, a));
    a->raise();
    EXPECT_THAT(root.children, ::testing::ElementsAre(b, c, a));
    root.raise(); // no parent: left alone
    EXPECT_EQ(handler.calls, 0);
}

TEST_F(WindowTree, DestroyingAWindowUnlinksItAndClearsTheInputStateThatPointsAtIt) {
    Window* parent = new Window(&root, 0, 0, 50, 50, "");
    Window* child = new Window(parent, 0, 0, 5, 5, "");
    Window* other = new Window(&root, 60, 60, 5, 5, "");
    hoverWindow = child;
    focusWindow = child;
    draggedWindow = child;
    dragOrigin = parent;
    pressTarget = child;
    delete parent;
    EXPECT_THAT(root.children, ::testing::ElementsAre(other));
    EXPECT_EQ(hoverWindow, nullptr);
    EXPECT_EQ(focusWindow, nullptr);
    EXPECT_EQ(draggedWindow, nullptr);
    EXPECT_EQ(dragOrigin, nullptr);
    EXPECT_EQ(pressTarget, child) << "the press target is only compared, never followed";
}

TEST_F(WindowTree, DeleteChildrenCopesWithChildrenThatTakeSiblingsOrHaveMovedAway) {
    struct Greedy : Window {
        Window* sibling;
        Greedy(Window* parent, Window* sibling) : Window(parent, 0, 0, 1, 1, ""), sibling(sibling) {}
        ~Greedy() override { delete sibling; }
    };
    Window* victim = new Window(nullptr, 0, 0, 1, 1, "");
    new Greedy(&root, victim);
    root.addChild(victim); // now a child too, after the greedy one
    Window elsewhere(nullptr, 0, 0, 1, 1, "");
    Window* moved = new Window(&root, 0, 0, 1, 1, "");
    elsewhere.addChild(moved); // also listed under root still, with another parent
    root.deleteChildren();
    EXPECT_TRUE(root.children.empty());
    EXPECT_TRUE(elsewhere.children.empty()) << "the moved child left its new parent as it died";
}

TEST_F(WindowTree, HitTestFindsTheDeepestVisibleWindowWithInclusiveEdges) {
    Window* panel = new Window(&root, 10, 10, 40, 30, "");
    Window* button = new Window(panel, 5, 5, 10, 4, "");
    EXPECT_EQ(hitTest(&root, 15, 15), button) << "top left corner";
    EXPECT_EQ(hitTest(&root, 25, 19), button) << "bottom right corner";
    EXPECT_EQ(hitTest(&root, 25.01f, 19), panel);
    EXPECT_EQ(hitTest(&root, 50, 40), panel) << "the panel's own far corner";
    EXPECT_EQ(hitTest(&root, 50.01f, 40), &root);
    EXPECT_EQ(hitTest(&root, -20, 500), &root) << "the root itself is never tested";
    button->visible = false;
    EXPECT_EQ(hitTest(&root, 15, 15), panel);
    panel->visible = false;
    EXPECT_EQ(hitTest(&root, 15, 15), &root);
    EXPECT_TRUE(button->visible == false && panel->visible == false);
}

TEST_F(WindowTree, HitTestPrefersTheLaterOfOverlappingWindowsAndNeverLeavesTheParent) {
    Window* first = new Window(&root, 10, 10, 20, 20, "");
    Window* second = new Window(&root, 10, 10, 20, 20, "");
    EXPECT_EQ(hitTest(&root, 20, 20), second);
    second->raise();
    first->raise();
    EXPECT_EQ(hitTest(&root, 20, 20), first);
    Window* sticking = new Window(first, 15, 15, 20, 20, "");
    EXPECT_EQ(hitTest(&root, 28, 28), sticking);
    EXPECT_EQ(hitTest(&root, 40, 40), &root) << "outside the parent the child is not reached";
    Window* dot = new Window(&root, 70, 70, 0, 0, "");
    EXPECT_EQ(hitTest(&root, 70, 70), dot);
    EXPECT_EQ(hitTest(&root, 70.01f, 70), &root);
}

TEST_F(WindowTree, EventOperationsFireTheirDelegatesWithTheRightArgument) {
    Window w(nullptr, 0, 0, 1, 1, "");
    Window dragged(nullptr, 0, 0, 1, 1, "");
    Counter c;
    w.leftClickHandler.bind(&c, &Counter::count);
    w.onLeftClick();
    EXPECT_EQ(c.last, &w);
    w.dragStartHandler.bind(&c, &Counter::count);
    w.onDragStart(&dragged);
    EXPECT_EQ(c.last, &dragged);
    EXPECT_FALSE(w.acceptsDrop(&dragged)) << "an empty handler refuses";
    w.acceptsDropHandler.bind(&c, &Counter::count);
    EXPECT_TRUE(w.acceptsDrop(&dragged));
    w.onFocus();
    EXPECT_EQ(focusWindow, &w);
    w.onRightClick(); // empty: nothing happens
    EXPECT_EQ(c.calls, 3);
}

TEST_F(WindowTree, ADelegateCanBeReboundFromInsideItsCallAndItsTargetMayDeleteTheWindow) {
    struct Toggle {
        int state = 0;
        int first(Window* w) {
            state = 1;
            w->leftClickHandler.bind(this, &Toggle::second);
            return 1;
        }
        int second(Window* w) {
            state = 2;
            delete w;
            return 2;
        }
    } toggle;
    Window* w = new Window(&root, 0, 0, 1, 1, "");
    w->leftClickHandler.bind(&toggle, &Toggle::first);
    EXPECT_EQ(w->leftClickHandler(w), 1);
    EXPECT_EQ(w->leftClickHandler(w), 2);
    EXPECT_EQ(toggle.state, 2);
    EXPECT_TRUE(root.children.empty());

    Delegate empty;
    EXPECT_FALSE(empty.bound());
    EXPECT_EQ(empty(&root), 0);
    Delegate nullTarget(static_cast<Counter*>(nullptr), &Counter::count);
    EXPECT_EQ(nullTarget(&root), 0) << "a null target gives 0";
}

} // namespace
