// The monkey soak: the whole program on a temporary copy of the sample campaign, fed a seeded stream
// of random but plausible input through the scripted backend, with the window tree and the input
// state checked after every frame. Run under the sanitizers, it finds what no planned test thought
// of: a handler that deletes a window someone still holds, a state that leaves the panel stuck.
//
//   soak EVENTS SEED [--quiet]
//
// Exits 0 after EVENTS input events with every check passed, 1 on a broken invariant (with the
// seed, the event number and the last events), 2 on bad arguments or no display.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "combat/combat.h"
#include "map/map.h"
#include "editors/edit_window.h"
#include "editors/list_entry.h"
#include "platform/glfw2.h"
#include "rules/character.h"
#include "rules/faction.h"
#include "rules/item.h"
#include "rules/random_source.h"
#include "rules/skill.h"
#include "rules/updatable.h"
#include "shell/hexfold.h"
#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/dialogue.h"
#include "toolkit/edit.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"
#include "toolkit/input_state.h"

namespace fs = std::filesystem;
using namespace platform;

namespace {

using ui::Rect;
using ui::screenRect;

// What went wrong, or empty.
std::string fault;

void fail(const std::string& what) {
    if (fault.empty()) fault = what;
}

// Reads a field of a window that is not in the tree: the sanitizer reports it if it was freed.
void touch(Window* w) {
    volatile float x = w->x;
    (void)x;
}

// Every window reachable from the root once, each child's parent its parent.
void walk(Window* w, std::set<Window*>& seen, int depth) {
    if (!seen.insert(w).second) return fail("a window is reachable twice: \"" + w->value + "\"");
    if (depth > 64) return fail("the tree is deeper than 64");
    for (Window* c : w->children) {
        if (c->parent != w) fail("a child's parent is not its parent: \"" + c->value + "\"");
        walk(c, seen, depth + 1);
    }
}

Combat* findCombat(Window* root) {
    for (Window* c : root->children)
        if (auto* combat = dynamic_cast<Combat*>(c)) return combat;
    return nullptr;
}

void checkInvariants(Window* root, std::set<Window*>& seen) {
    seen.clear();
    walk(root, seen, 0);
    // A window lifted out of the tree by its drag takes its subtree along.
    if (draggedWindow && draggedWindow->movable && !seen.count(draggedWindow)) {
        touch(draggedWindow);
        walk(draggedWindow, seen, 0);
    }
    auto live = [&](Window* w, const char* name) {
        if (!w || seen.count(w)) return;
        fail(std::string(name) + " points at a window outside the tree");
    };
    live(focusWindow, "focusWindow");
    live(hoverWindow, "hoverWindow");
    live(draggedWindow, "draggedWindow");
    live(dragOrigin, "dragOrigin");
    if (draggedWindow && !draggedWindow->movable && !seen.count(draggedWindow->parent))
        fail("the dragged window has no parent in the tree");
    if (balloonWindow) {
        touch(balloonWindow);
        if (seen.count(balloonWindow)) fail("the balloon is in the tree");
    }
    if (Combat* combat = findCombat(root)) {
        if (combat->current) {
            bool found = false;
            for (Character* c : combat->combatants) found = found || c == combat->current;
            if (!found) fail("combat's current is not a combatant");
        }
        if (combat->map && !seen.count(static_cast<Window*>(combat->map)))
            fail("combat's map is not in the tree");
    }
}

// The input stream. Each gesture queues events for the scripted backend and runs the frames that
// deliver them; the pointer goes mostly to visible windows, so that it reaches deep states.
class Monkey {
  public:
    Monkey(unsigned seed) : random(seed) {}

    std::mt19937 random;
    long events = 0;
    long frames = 0;
    std::deque<std::string> recent;
    std::set<Window*> seen;
    Window* root = nullptr;
    bool shift = false;
    bool ended = false;

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    float uniform(float lo, float hi) { return std::uniform_real_distribution<float>(lo, hi)(random); }

    void note(const std::string& what) {
        recent.push_back(what);
        if (recent.size() > 40) recent.pop_front();
    }

    // One frame; the invariants after it.
    void step() {
        if (ended) return;
        if (!frameStep(root)) {
            ended = true;
            return;
        }
        ++frames;
        checkInvariants(root, seen);
    }

    // Visible windows, weighted: what reacts to a click counts more than a plain label.
    std::vector<Window*> targets;
    void gather(Window* w) {
        if (!w->visible) return;
        int weight = 1;
        if (w->leftClickHandler || w->rightClickHandler || dynamic_cast<Edit*>(w)) weight = 4;
        if (w->dragDrop) weight = 3;
        for (int i = 0; i < weight; ++i) targets.push_back(w);
        for (Window* c : w->children) gather(c);
    }

    // A point in a random visible window, in logical units on the screen.
    void somewhere(float& lx, float& ly, bool draggable = false) {
        targets.clear();
        gather(root);
        std::vector<Window*> pool;
        if (draggable)
            for (Window* w : targets)
                if (w->dragDrop || w->movable) pool.push_back(w);
        if (pool.empty()) pool = targets;
        if (pool.empty() || pick(10) == 0) {
            lx = uniform(0, 100);
            ly = uniform(0, 100);
            return;
        }
        Rect r = screenRect(pool[pick(int(pool.size()))]);
        lx = std::clamp(uniform(r.x, r.x + r.w), 0.f, 99.9f);
        ly = std::clamp(uniform(r.y, r.y + r.h), 0.f, 99.9f);
    }

    // The pointer travels to a point in a few motion events, as a real mouse reports it within one
    // frame; nothing is delivered until the next step.
    float pointerX = 0, pointerY = 0;
    void travel(float lx, float ly) {
        int hops = 1 + pick(5);
        for (int i = 1; i <= hops; ++i) {
            float t = float(i) / hops;
            float px = pointerX + (lx - pointerX) * t, py = pointerY + (ly - pointerY) * t;
            script::movePointer(int(px * pixelsPerUnitX), int(py * pixelsPerUnitY));
            ++events;
        }
        pointerX = lx;
        pointerY = ly;
    }

    void button(int b, bool down) {
        script::setButton(b, down);
        ++events;
        step();
    }

    std::string at(float lx, float ly) { return " at " + std::to_string(lx) + ", " + std::to_string(ly); }

    void clickAt(float lx, float ly, int b) {
        note("click " + std::to_string(b) + at(lx, ly));
        travel(lx, ly);
        button(b, true);
        button(b, false);
    }

    void click(int b) {
        float lx, ly;
        somewhere(lx, ly);
        clickAt(lx, ly, b);
    }

    void dragBetween(float fx, float fy, float tx, float ty) {
        note("drag" + at(fx, fy) + " to" + at(tx, ty));
        travel(fx, fy);
        button(0, true);
        // Beyond the few pixels that tell a drag from a click.
        travel(fx + 0.6f, fy + 0.6f);
        step();
        int steps = 1 + pick(3);
        for (int i = 1; i <= steps; ++i) {
            travel(fx + (tx - fx) * i / steps, fy + (ty - fy) * i / steps);
            step();
        }
        button(0, false);
    }

    void drag() {
        float fx, fy, tx, ty;
        somewhere(fx, fy, true);
        somewhere(tx, ty);
        dragBetween(fx, fy, tx, ty);
    }

    // Mostly what a referee types: digits into dice and declarations, Enter, a few letters; a burst
    // of keys arrives within one frame.
    void typeSomething() {
        static const int special[] = {KEY_ENTER,    KEY_BACKSPACE, KEY_UP,          KEY_DOWN,
                                      KEY_LEFT,     KEY_RIGHT,     KEY_PAGEUP,      KEY_PAGEDOWN,
                                      KEY_KP_ENTER, KEY_KP_0 + 3,  KEY_KP_SUBTRACT, '-',
                                      ' ',          '.',           '/',             'D'};
        int n = 1 + pick(3);
        std::string typed;
        for (int i = 0; i < n; ++i) {
            int code;
            int kind = pick(10);
            if (kind < 5)
                code = '0' + pick(10);
            else if (kind < 7)
                code = 'A' + pick(26);
            else
                code = special[pick(int(std::size(special)))];
            typed += std::to_string(code) + " ";
            script::setKey(code, true);
            script::setKey(code, false);
            events += 2;
        }
        note("keys " + typed);
        step();
    }

    // The visible windows that move a fight on, by caption.
    void findVisible(Window* w, const std::vector<std::string>& captions, std::vector<Window*>& found) {
        if (!w->visible) return;
        for (const std::string& c : captions)
            if (w->value == c) found.push_back(w);
        for (Window* c : w->children) findVisible(c, captions, found);
    }

    // A visible field, those of the combat panel's dialogues (declarations, dice) first.
    Window* someField() {
        std::vector<Window*> fields, ofCombat;
        Combat* combat = findCombat(root);
        targets.clear();
        gather(root);
        for (Window* w : targets) {
            if (!dynamic_cast<Edit*>(w)) continue;
            fields.push_back(w);
            for (Window* p = w->parent; p; p = p->parent)
                if (p == combat) ofCombat.push_back(w);
        }
        if (!ofCombat.empty() && pick(10) < 7) return ofCombat[pick(int(ofCombat.size()))];
        return fields.empty() ? nullptr : fields[pick(int(fields.size()))];
    }

    // A right click on the free surface of the window in front, which closes lists and editors;
    // false when no such point was found.
    bool closeFront() {
        Window* front = root->children.back();
        Rect rect = screenRect(front);
        for (int attempt = 0; attempt < 8; ++attempt) {
            float lx = uniform(rect.x, rect.x + rect.w), ly = uniform(rect.y, rect.y + rect.h);
            if (hitTest(root, lx, ly) == front) {
                clickAt(lx, ly, 1);
                return true;
            }
        }
        return false;
    }

    // A referee's move rather than a monkey's: the buttons that move a fight on, a number and Enter
    // into the field that has the focus, a character from a list onto the map.
    void purposeful() {
        static const std::vector<std::string> onward = {"Begin Combat", "Next Round", "Roll", "Done",
                                                        "OK",           "End Turn",   "Other"};
        int r = pick(10);
        // A crowded screen hides the panel: a referee closes what lies in front.
        if (root->children.size() > 14 && r < 4 && closeFront()) return;
        if (r < 5) {
            std::vector<Window*> found;
            findVisible(root, onward, found);
            if (!found.empty()) {
                Rect rect = screenRect(found[pick(int(found.size()))]);
                return clickAt(rect.x + rect.w / 2, rect.y + rect.h / 2, 0);
            }
        } else if (r < 8) {
            // A field: focused by a click, then a small number and Enter, as a
            // declaration or a die typed by hand.
            Window* field = someField();
            if (field) {
                Rect rect = screenRect(field);
                clickAt(rect.x + rect.w / 2, rect.y + rect.h / 2, 0);
                // One digit: a declaration of dozens of actions would hold the round for ever.
                int digit = '0' + pick(4);
                script::setKey(digit, true);
                script::setKey(digit, false);
                script::setKey(KEY_ENTER, true);
                script::setKey(KEY_ENTER, false);
                events += 4;
                note("a number and Enter");
                return step();
            }
        } else {
            Combat* combat = findCombat(root);
            targets.clear();
            gather(root);
            std::vector<Window*> entries;
            for (Window* w : targets)
                if (dynamic_cast<_ListEntry<Character>*>(w)) entries.push_back(w);
            if (combat && combat->map && !entries.empty()) {
                Rect from = screenRect(entries[pick(int(entries.size()))]);
                Rect to = screenRect(combat->map);
                float tx = std::clamp(uniform(to.x, to.x + to.w), 0.f, 99.9f);
                float ty = std::clamp(uniform(to.y, to.y + to.h), 0.f, 99.9f);
                return dragBetween(from.x + from.w / 2, from.y + from.h / 2, tx, ty);
            }
        }
        click(0);
    }

    // A referee's opening, so that a short run reaches a fight: both character lists opened, a few
    // characters dragged onto the map, "Begin Combat".
    void opening() {
        std::vector<Window*> found;
        for (const char* list : {"Characters", "NPCs"}) {
            found.clear();
            findVisible(root, {list}, found);
            if (found.empty()) continue;
            Rect rect = screenRect(found.front());
            clickAt(rect.x + rect.w / 2, rect.y + rect.h / 2, 0);
            for (int i = 0; i < 2; ++i) {
                targets.clear();
                gather(root);
                std::vector<Window*> entries;
                for (Window* w : targets)
                    if (dynamic_cast<_ListEntry<Character>*>(w)) entries.push_back(w);
                Combat* combat = findCombat(root);
                if (entries.empty() || !combat || !combat->map) break;
                Rect from = screenRect(entries[pick(int(entries.size()))]);
                Rect to = screenRect(combat->map);
                // The start camera shows the map's cells in the lower right of the view.
                dragBetween(from.x + from.w / 2, from.y + from.h / 2, uniform(to.x + to.w / 3, to.x + to.w - 1),
                            uniform(to.y + to.h / 3, to.y + to.h - 1));
            }
        }
        // The lists opened under the dock cover the panel: a right click on the free surface of
        // each window in front closes it.
        for (int i = 0; i < 4 && root->children.size() > 6; ++i) closeFront();
        found.clear();
        findVisible(root, {"Begin Combat"}, found);
        if (!found.empty()) {
            Rect rect = screenRect(found.front());
            clickAt(rect.x + rect.w / 2, rect.y + rect.h / 2, 0);
        }
    }

    void once() {
        int r = pick(100);
        if (r < 35) {
            purposeful();
        } else if (r < 55) {
            click(0);
        } else if (r < 62) {
            click(1);
        } else if (r < 64) {
            click(2);
        } else if (r < 69) {
            float lx, ly;
            somewhere(lx, ly);
            note("move" + at(lx, ly));
            travel(lx, ly);
            step();
        } else if (r < 74) {
            drag();
        } else if (r < 78) {
            int steps = pick(7) - 3;
            note("wheel " + std::to_string(steps));
            script::turnWheel(steps);
            ++events;
            step();
        } else if (r < 80) {
            shift = !shift;
            note(shift ? "shift down" : "shift up");
            script::setKey(KEY_LSHIFT, shift);
            ++events;
            step();
        } else {
            typeSomething();
        }
    }
};

bool copyCampaign(const fs::path& to) {
    std::error_code error;
    fs::copy(HEXFOLD_CAMPAIGN_DIR, to, fs::copy_options::recursive, error);
    if (error) std::fprintf(stderr, "soak: cannot copy the campaign: %s\n", error.message().c_str());
    return !error;
}

struct Depth {
    size_t windows = 0;
    size_t topLevel = 0;
    size_t combatants = 0;
    int rounds = 0;
    void take(Window* root, size_t treeSize) {
        windows = std::max(windows, treeSize);
        topLevel = std::max(topLevel, root->children.size());
        if (Combat* combat = findCombat(root)) {
            combatants = std::max(combatants, combat->combatants.size());
            rounds = std::max(rounds, combat->roundsBegun);
        }
    }
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: soak EVENTS SEED [--quiet]\n");
        return 2;
    }
    long wanted = std::atol(argv[1]);
    unsigned seed = unsigned(std::strtoul(argv[2], nullptr, 10));
    bool quiet = argc > 3 && std::string(argv[3]) == "--quiet";
    if (wanted <= 0) {
        std::fprintf(stderr, "soak: EVENTS must be a positive number\n");
        return 2;
    }

    char pattern[] = "/tmp/hexfold-soak-XXXXXX";
    if (!mkdtemp(pattern)) {
        std::perror("soak: mkdtemp");
        return 2;
    }
    fs::path dir = fs::path(pattern) / "campaign";
    if (!copyCampaign(dir) || chdir(dir.c_str()) != 0) return 2;

    selectBackend(Backend::Scripted);
    // The same seed gives the same dice, so that a run that broke can be replayed.
    replaySystemSeeds(seed * 7919u + 1u);
    sharedRandom.seedWord(seed);
    Monkey monkey(seed);
    Depth depth;
    int restarts = 0;
    auto start = std::chrono::steady_clock::now();
    int status = 0;
    while (monkey.events < wanted && status == 0) {
        auto* hexfold = new Hexfold();
        if (!graphicsOpened()) {
            std::fprintf(stderr, "soak: no window: run it under xvfb-run\n");
            return 2;
        }
        monkey.root = hexfold;
        monkey.ended = false;
        monkey.opening();
        while (monkey.events < wanted && !monkey.ended) {
            monkey.once();
            depth.take(hexfold, monkey.seen.size());
            if (!fault.empty()) {
                std::fprintf(stderr, "soak: seed %u, event %ld, frame %ld: %s\nlast gestures:\n", seed,
                             monkey.events, monkey.frames, fault.c_str());
                for (const std::string& g : monkey.recent) std::fprintf(stderr, "  %s\n", g.c_str());
                status = 1;
                break;
            }
        }
        if (const char* shot = std::getenv("HEXFOLD_SOAK_SCREENSHOT"); shot && !monkey.ended) {
            if (!ui::savePng(shot)) std::fprintf(stderr, "soak: cannot write %s\n", shot);
            // What fills the screen at the end, front last.
            for (Window* w : hexfold->children) {
                auto* d = dynamic_cast<Dialogue*>(w);
                std::printf("  %s\n", d ? d->caption.c_str() : w->value.c_str());
            }
        }
        // The program asked to end: start it again on the same files, as a referee would.
        if (monkey.ended) ++restarts;
        delete hexfold;
        clearModel();
        resetInputState();
        script::reset();
        monkey.shift = false;
        monkey.pointerX = monkey.pointerY = 0;
    }
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (!quiet || status != 0)
        std::printf("soak: seed %u: %ld events, %ld frames in %.1f s (%.0f events/s); deepest: %zu windows, "
                    "%zu top-level, %zu combatants, round %d; %d restarts\n",
                    seed, monkey.events, monkey.frames, seconds, monkey.events / seconds, depth.windows,
                    depth.topLevel, depth.combatants, depth.rounds, restarts);
    std::error_code ignored;
    fs::remove_all(pattern, ignored);
    return status;
}
