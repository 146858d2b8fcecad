// TimerWindow: the fuse's field and the "Impact" button.
#include "combat/timer_window.h"

#include "toolkit/input_state.h"
#include "toolkit/label.h"

TimerWindow::TimerWindow(Window* parent)
    : Dialogue(parent, "Set Timer", (parent->width - 10) / 2, (parent->height - 10) / 2, 10, 10, "") {
    impactButton = new Button(this, "Impact", 1, 4, 6, 2.5f, "");
    impactButton->leftClickHandler.bind(this, &TimerWindow::impact);
    timerEdit = new NumEdit(this, blankNumber, 1, 7.25f, 2.5f, 2, "");
    timerEdit->commitHandler.bind(static_cast<Dialogue*>(this), &Dialogue::close);
    new Label(this, "rnds", 3.5f, 7.5f, 3, 1.5f, "");
    // The referee types the rounds and presses Enter, without reaching for the mouse.
    focusWindow = timerEdit;
}

int TimerWindow::impact(Window*) {
    *timerEdit->number = -1;
    return close(this);
}
