// The catalogues and their windows inside the UI driver: each test starts and ends with empty
// catalogues, builds what it needs in code, finds entries and labels in the window tree, and logs
// the handlers that a window fires.
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "editors/list_entry.h"
#include "rules/character.h"
#include "rules/faction.h"
#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/input_state.h"
#include "toolkit/label.h"
#include "unit/model_test.h"

class CatalogueScreen : public ui::UiTest {
  protected:
    void SetUp() override { clearModel(), UiTest::SetUp(); }
    // The windows go first, while what they show still lives.
    void TearDown() override { UiTest::TearDown(), clearModel(); }

    static Skill* skill(const std::string& name, const std::string& parent = "") {
        allSkills.push_back(new Skill(name));
        parentOf(name) = parent;
        return allSkills.back();
    }
    template <class T> static T* catalogued(T* item) { return allItems.push_back(item), item; }

    // The entry of an object; any item is listed as an Item.
    template <class T, class L = std::conditional_t<std::is_base_of_v<Item, T>, Item, T>>
    static ListEntry<L>* entry(Window* in, const T* item) {
        for (auto* e : all<ListEntry<L>>(in))
            if (e->item == item) return e;
        return nullptr;
    }
    template <class W = Label> static W* captioned(Window* in, const std::string& caption) {
        for (auto* w : all<W>(in))
            if (w->caption == caption) return w;
        return nullptr;
    }
    static std::string balloonText() {
        return balloonWindow ? static_cast<Label*>(balloonWindow->children[0])->caption : "(none)";
    }

    // Drags a window by its middle onto a free point of another: its lower right corner.
    void dragOnto(Window* w, Window* target) {
        if (!w) return ADD_FAILURE() << "nothing to drag";
        Rect from = screenRect(w), to = screenRect(target);
        drag(from.centreX(), from.centreY(), to.x + to.w - 0.5f, to.y + to.h - 0.3f);
    }
    void rightClickBody(Window* w) {
        Rect r = screenRect(w);
        click(r.x + r.w - 0.5f, r.y + r.h - 0.3f, 1);
    }
    // A click needs the pointer to have moved onto what was built since it last moved.
    void clickAfterRebuild(Window* w) {
        Rect r = screenRect(w);
        moveTo(r.centreX() + 0.3f, r.centreY());
        clickOn(w);
    }

    // Logs the handlers bound to it, with the number of children that a window has at that moment.
    struct Recorder {
        ui::EventLog log;
        Window* counted = nullptr;
        std::string note(const char* what) {
            return counted ? what + (", " + std::to_string(counted->children.size())) : what;
        }
        int taken(Window*) { return log.push_back(note("taken")), 1; }
        int accepted(Window*) { return log.push_back(note("accepted")), 0; }
        int refused(Window*) { return log.push_back(note("refused")), 0; }
        int closed(Window*) { return log.push_back(note("closed")), 0; }
    } recorder;
};
