// TimerWindow: where the thrower sets a grenade's fuse in rounds, or asks for it to go off on
// impact.
#pragma once

#include "toolkit/button.h"
#include "toolkit/dialogue.h"
#include "toolkit/edit.h"

// "Impact" puts -1 in the field and closes; Enter closes with what the field holds, and an empty
// field holds the lowest int, which is impact too. The closeHandler reads timerEdit.
class TimerWindow : public Dialogue {
  public:
    // Centred in the parent, with the keys in the field.
    explicit TimerWindow(Window* parent);

    Button* impactButton;
    NumEdit* timerEdit;

  private:
    int impact(Window* sender);
};
