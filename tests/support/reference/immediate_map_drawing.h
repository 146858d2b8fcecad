// The map as it was first drawn: in immediate mode, every cell every frame, a dozen primitives a
// cell. Kept out of the program as the reference that the golden pictures were made with and that
// the benchmark measures the map's drawing against.
#pragma once

#include "map/map.h"
#include "toolkit/window.h"

// The whole display of the map, as its draw did it, but for the camera keys.
void drawMapImmediately(Map& map);

// A window that shows a map in the immediate way, in the map's place; the map itself is hidden. The map
// must outlive the window's draws.
class ImmediateMapView : public Window {
  public:
    ImmediateMapView(Window* parent, Map& map);
    void draw(float alpha) override;

    Map& map;
};
