// Probe: a window that logs every event it receives, by name, into a shared log, so that tests can
// compare the order in which handlers ran with the expected order.
#pragma once

#include <string>
#include <vector>

#include "toolkit/window.h"

namespace ui {

using EventLog = std::vector<std::string>;

class Probe : public Window {
  public:
    Probe(Window* parent, std::string name, float x, float y, float w, float h, EventLog* log);
    ~Probe() override;

    std::string name;
    EventLog* log;
    bool accept = false;    // the answer to acceptsDrop
    int drawCount = 0;      // draw calls
    int afterDrawCount = 0; // afterDraw calls
    float lastAlpha = -1;   // the opacity of the last draw
    // A handler that deletes a window: at the first event of this name ("leave", "drag start",
    // "accepts", ...) the probe logs it, deletes `victim` (itself, its parent, any window) and
    // does nothing more for that event.
    std::string deleteOn;
    Window* victim = nullptr;

    void draw(float alpha) override;
    bool afterDraw() override;
    void onKey(int key) override;
    void onWheel(int delta) override;
    void onMouseEnter() override;
    void onMouseMove(int dx, int dy) override;
    void onMouseLeave() override;
    void onFocus() override;
    void onFocusLost() override;
    void onButtonDown(int button) override;
    void onButtonUp(int button) override;
    void onLeftClick() override;
    void onRightClick() override;
    void onDragStart(Window* dragged) override;
    void onDropRefused(Window* dragged) override;
    void onDropAccepted(Window* dragged) override;
    bool acceptsDrop(Window* dragged) override;

  private:
    // Logs the event; false when it deleted the victim, and so perhaps itself.
    bool note(const std::string& event, const std::string& detail = "");
};

// The name of a window for logs: a Probe's name, or "?" for another window, "-" for null.
std::string nameOf(Window* w);

} // namespace ui

#include <functional>

namespace ui {

// A window that draws by running a function, in its own coordinates.
class Painter : public Window {
  public:
    Painter(Window* parent, float x, float y, float w, float h, std::function<void(Painter&)> paint)
        : Window(parent, x, y, w, h, ""), paint(std::move(paint)) {}
    void draw(float) override { paint(*this); }
    std::function<void(Painter&)> paint;
};

} // namespace ui
