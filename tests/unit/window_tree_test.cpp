// The window tree without a display: construction and destruction rules, references that outlive
// their window, hit testing, raising, adding and removing children, and delegates that rebind or
// delete from inside their call.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "toolkit/input_state.h"
#include "toolkit/window.h"

using ::testing::ElementsAre;

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

TEST_F(WindowTree, AChildJoinsLastWithTheParentsLookOnlyAddChildFiresTheHandlerAndRaiseFiresNone) {
    root.fontSize = 2.5f;
    root.alpha = 0.5f;
    Counter added, removed;
    root.childAddedHandler.bind(&added, &Counter::count);
    root.childRemovedHandler.bind(&removed, &Counter::count);
    Window* a = new Window(&root, 1, 2, 3, 4, "a");
    Window* b = new Window(&root, 0, 0, 1, 1, "");
    EXPECT_THAT(root.children, ElementsAre(a, b));
    EXPECT_EQ(std::tuple(a->fontSize, a->alpha, added.calls), std::tuple(2.5f, 0.5f, 0));

    Window other(nullptr, 0, 0, 10, 10, "");
    root.removeChild(a);
    root.removeChild(a); // not a child any more: the handler fires all the same
    EXPECT_EQ(a->parent, &root) << "removeChild leaves the parent field";
    EXPECT_EQ(removed.calls, 2);
    root.addChild(a);
    other.addChild(a); // does not leave root's list
    EXPECT_EQ(a->parent, &other);
    EXPECT_EQ(added.calls, 1);
    EXPECT_THAT(root.children, ElementsAre(b, a));
    root.removeChild(a);

    // Raising moves a window to the front and fires neither handler; without a parent it does nothing.
    Window* c = new Window(&root, 0, 0, 5, 5, "");
    b->raise();
    b->raise();
    root.raise();
    EXPECT_THAT(root.children, ElementsAre(c, b));
    EXPECT_EQ(std::pair(added.calls, removed.calls), std::pair(1, 3));
}

TEST_F(WindowTree, DestroyingAWindowUnlinksItAndClearsTheInputStateAndTheReferencesThatPointAtIt) {
    Window* parent = new Window(&root, 0, 0, 50, 50, "");
    Window* child = new Window(parent, 0, 0, 5, 5, "");
    Window* other = new Window(&root, 60, 60, 5, 5, "");
    hoverWindow = focusWindow = draggedWindow = pressTarget = child;
    dragOrigin = parent;
    WindowRef toChild(child), toOther(other);
    // References end in any order, and the others stay linked: one from the middle, then the
    // newest twice.
    auto* older = new WindowRef(child);
    auto* newer = new WindowRef(parent);
    auto* newest = new WindowRef(other);
    delete newer;
    delete newest;
    delete older;
    WindowRef toParent(parent);
    delete parent;
    EXPECT_EQ(std::tuple(toChild.get(), toParent.get(), toOther.get()), std::tuple(nullptr, nullptr, other));
    EXPECT_THAT(root.children, ElementsAre(other));
    EXPECT_EQ(std::tuple(hoverWindow, focusWindow, draggedWindow, dragOrigin),
              std::tuple(nullptr, nullptr, nullptr, nullptr));
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
    root.addChild(victim);
    Window elsewhere(nullptr, 0, 0, 1, 1, "");
    Window* moved = new Window(&root, 0, 0, 1, 1, "");
    elsewhere.addChild(moved); // listed under both, with the other as parent
    root.deleteChildren();
    EXPECT_TRUE(root.children.empty());
    EXPECT_TRUE(elsewhere.children.empty());
}

TEST_F(WindowTree, HitTestFindsTheDeepestVisibleLaterWindowWithInclusiveEdgesInsideItsParent) {
    Window* panel = new Window(&root, 10, 10, 40, 30, "");
    Window* button = new Window(panel, 5, 5, 10, 4, "");
    Window* twin = new Window(&root, 60, 10, 20, 20, "");
    Window* front = new Window(&root, 60, 10, 20, 20, "");
    Window* sticking = new Window(front, 15, 15, 20, 20, "");
    Window* dot = new Window(&root, 90, 90, 0, 0, "");
    struct Case {
        float x, y;
        Window* expected;
    } cases[] = {{15, 15, button},    {25, 19, button},  {25.01f, 19, panel}, {50, 40, panel},
                 {50.01f, 40, &root}, {-20, 500, &root}, {70, 20, front},     {78, 28, sticking},
                 {90, 40, &root},     {90, 90, dot},     {90.01f, 90, &root}};
    for (const Case& c : cases)
        EXPECT_EQ(hitTest(&root, c.x, c.y), c.expected) << c.x << ", " << c.y;
    twin->raise();
    EXPECT_EQ(hitTest(&root, 70, 20), twin);
    button->visible = false;
    EXPECT_EQ(hitTest(&root, 15, 15), panel);
    panel->visible = false;
    EXPECT_EQ(hitTest(&root, 15, 15), &root);
}

TEST_F(WindowTree, DelegatesFireWithTheirArgumentAndMayRebindOrDeleteFromInsideTheCall) {
    Window dragged(nullptr, 0, 0, 1, 1, "");
    Counter c;
    EXPECT_FALSE(root.acceptsDrop(&dragged)) << "an empty handler refuses";
    root.acceptsDropHandler.bind(&c, &Counter::count);
    EXPECT_TRUE(root.acceptsDrop(&dragged));
    EXPECT_EQ(c.last, &dragged);
    root.onFocus();
    EXPECT_EQ(focusWindow, &root);

    struct Toggle {
        int first(Window* w) {
            w->leftClickHandler.bind(this, &Toggle::second);
            return 1;
        }
        int second(Window* w) {
            delete w;
            return 2;
        }
    } toggle;
    Window* w = new Window(&root, 0, 0, 1, 1, "");
    w->leftClickHandler.bind(&toggle, &Toggle::first);
    EXPECT_EQ(w->leftClickHandler(w), 1);
    EXPECT_EQ(w->leftClickHandler(w), 2);
    EXPECT_TRUE(root.children.empty());
    EXPECT_EQ(Delegate()(&root), 0);
    EXPECT_EQ(Delegate(static_cast<Counter*>(nullptr), &Counter::count)(&root), 0) << "a null target gives 0";
}

} // namespace
