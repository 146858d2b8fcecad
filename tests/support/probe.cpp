// Probe: logs each event and then does what Window does, so delegates still fire; or deletes a
// window in its place, as a handler may.
#include "support/probe.h"

namespace ui {

std::string nameOf(Window* w) {
    if (!w) return "-";
    if (auto* p = dynamic_cast<Probe*>(w)) return p->name;
    return "?";
}

Probe::Probe(Window* parent, std::string name, float x, float y, float w, float h, EventLog* log)
    : Window(parent, x, y, w, h, ""), name(std::move(name)), log(log) {}

Probe::~Probe() {
    if (log) log->push_back(name + ":destroyed");
}

bool Probe::note(const std::string& event, const std::string& detail) {
    if (log) log->push_back(name + ":" + event + (detail.empty() ? "" : " " + detail));
    if (event != deleteOn) return true;
    Window* doomed = victim;
    deleteOn.clear();
    victim = nullptr;
    delete doomed;
    return false;
}

void Probe::draw(float a) {
    ++drawCount;
    lastAlpha = a;
    Window::draw(a);
}

bool Probe::afterDraw() {
    ++afterDrawCount;
    return true;
}

void Probe::onKey(int key) {
    note("key", std::to_string(key));
}
void Probe::onWheel(int delta) {
    note("wheel", std::to_string(delta));
}

void Probe::onMouseEnter() {
    if (note("enter")) Window::onMouseEnter();
}

void Probe::onMouseMove(int dx, int dy) {
    if (note("move", std::to_string(dx) + "," + std::to_string(dy))) Window::onMouseMove(dx, dy);
}

void Probe::onMouseLeave() {
    if (note("leave")) Window::onMouseLeave();
}

void Probe::onFocus() {
    if (note("focus")) Window::onFocus();
}

void Probe::onFocusLost() {
    if (note("focus lost")) Window::onFocusLost();
}

void Probe::onButtonDown(int button) {
    note("down", std::to_string(button));
}
void Probe::onButtonUp(int button) {
    note("up", std::to_string(button));
}

void Probe::onLeftClick() {
    if (note("left click")) Window::onLeftClick();
}

void Probe::onRightClick() {
    if (note("right click")) Window::onRightClick();
}

void Probe::onDragStart(Window* dragged) {
    if (note("drag start", nameOf(dragged))) Window::onDragStart(dragged);
}

void Probe::onDropRefused(Window* dragged) {
    if (note("drop refused", nameOf(dragged))) Window::onDropRefused(dragged);
}

void Probe::onDropAccepted(Window* dragged) {
    if (note("drop accepted", nameOf(dragged))) Window::onDropAccepted(dragged);
}

bool Probe::acceptsDrop(Window* dragged) {
    bool answer = accept;
    note("accepts", nameOf(dragged) + "?");
    return answer;
}

} // namespace ui
