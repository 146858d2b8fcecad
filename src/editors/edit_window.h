// Edit windows: a dialogue that shows one object of the model, writes straight into it and follows
// it, rebuilding at its next draw after a change and dying with it. Also the skill and faction editors.
#pragma once

#include <string>

#include "rules/observer.h"
#include "toolkit/dialogue.h"

class Skill;
class Faction;

template <class T> class _EditWindow : public Dialogue, public Observer {
  public:
    // At the parent's top left corner, 1 x 1 until the first draw builds and sizes it. A right
    // click on its free surface closes it: there is no other closing control.
    _EditWindow(Window* parent, T* object, std::string caption)
        : Dialogue(parent, std::move(caption), 0, 0, 1, 1, ""), object(object) {
        object->addObserver(*this);
        fontSize = 1.5f;
        rightClickHandler.bind(static_cast<Dialogue*>(this), &Dialogue::close);
    }
    // Observer's part goes first (the bases die in reverse), so the object forgets the window
    // before the widgets go.
    ~_EditWindow() override = default;

    // A change may be announced from inside one of this window's own handlers, with the widget
    // that runs it still on the stack: nothing is touched until the next draw.
    void changed() override { dirty = true; }
    void draw(float alpha) override {
        if (dirty) {
            rebuild();
            dirty = false;
        }
        Dialogue::draw(alpha);
    }
    // An entry dragged out of the window shows faded on its way, and comes back to full colour when
    // the drop is refused.
    void onDragStart(Window* dragged) override {
        dragged->alpha = 0.5f;
        dragStartHandler(dragged);
    }
    void onDropRefused(Window* dragged) override {
        dragged->alpha = 1;
        dropRefusedHandler(dragged);
    }
    // Makes every child for the present state of the object and sizes the window.
    virtual void rebuild() = 0;

    bool dirty = true;
    T* object; // not owned
};

template <class T> class EditWindow;

// Shows a catalogue skill. The fields keep what is typed in their own values: the catalogue does
// not change.
template <> class EditWindow<Skill> : public _EditWindow<Skill> {
  public:
    EditWindow(Window* parent, Skill* skill);
    void rebuild() override;
};

// The members of a faction, each with a button that takes it out; characters dropped on the window
// join, and a member dropped on another window that takes it leaves.
template <> class EditWindow<Faction> : public _EditWindow<Faction> {
  public:
    EditWindow(Window* parent, Faction* faction, std::string caption);
    void rebuild() override;
    void onDropAccepted(Window* dragged) override;
    bool acceptsDrop(Window* dragged) override;
};
