// Map display: the camera's keys, the lens and view, the cells (kept as geometry by MapMesh), the
// occupants' marks, the path line and the frame. The map's draw takes the OpenGL state
// over for one call and gives back what it changed, since the 2D toolkit draws right after it.
#include <GL/gl.h>

#include "map/map.h"
#include "map/map_mesh.h"
#include "platform/glfw2.h"
#include "rules/character.h"
#include "rules/faction.h"
#include "toolkit/input_state.h"

namespace {
struct KeyStep {
    int key;
    float x, y, z;
};
// In camera axes: sideways, up and down the view, and along the view (up arrow forwards).
constexpr KeyStep keySteps[] = {
    {platform::KEY_LEFT, -0.2f, 0, 0},   {platform::KEY_RIGHT, 0.2f, 0, 0},
    {platform::KEY_PAGEUP, 0, -0.2f, 0}, {platform::KEY_PAGEDOWN, 0, 0.2f, 0},
    {platform::KEY_DOWN, 0, 0, -0.2f},   {platform::KEY_UP, 0, 0, 0.2f},
};
} // namespace

void Map::moveByKeys() {
    // One step per frame and key, so the speed follows the frame rate; several keys add up.
    for (const KeyStep& k : keySteps)
        if (keyDown[k.key]) camera.move(k.x, k.y, k.z, false, 1);
}

void Map::draw(float) {
    if (focusWindow == this) moveByKeys();
    beginView();
    meshOf().draw(texture);
    // Marks are few enough to go one by one.
    mesh->forEachCellInView(drawMark);
    if (pendingLength != 0 && showPath) drawPathLine();
    endView();
}

void Map::beginView() {
    // Depth function, polygon offset, line width, texture binding and current colour come back
    // as they were; matrices are pushed and popped; the rest is set back by hand in endView.
    glPushAttrib(GL_DEPTH_BUFFER_BIT | GL_POLYGON_BIT | GL_LINE_BIT | GL_TEXTURE_BIT | GL_CURRENT_BIT);
    glViewport(static_cast<int>(viewLeft), static_cast<int>(768 - viewHeight - viewTop),
               static_cast<int>(viewWidth), static_cast<int>(viewHeight));
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    // At distance 1 a thousand pixels make one map unit.
    camera.setFrustum(viewWidth / 2000, -viewHeight / 2000, 1, 1000);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    camera.applyView();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
}

void Map::endView() {
    glDisable(GL_DEPTH_TEST);
    glLoadIdentity();
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glColor4f(0, 0, 0, 1);
    glBegin(GL_LINE_LOOP);
    glVertex2f(-1, -1);
    glVertex2f(-1, 1);
    glVertex2f(1, 1);
    glVertex2f(1, -1);
    glEnd();

    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glPopAttrib();
    glDisable(GL_TEXTURE_2D);
    glViewport(0, 0, 1024, 768);
}

void Map::drawMark(const Cell* cell) {
    // Flat on the cell, in the colour of the occupant's faction, black without one. The colour is
    // set ahead of the quad, where the renderer takes it as it is rather than shading it across.
    const Character* occupant = cell->occupant;
    if (!occupant) return;
    const Faction* f = occupant->faction;
    if (f)
        glColor3f(f->colour[0], f->colour[1], f->colour[2]);
    else
        glColor3f(0, 0, 0);
    const Vector3& c = cell->centre;
    glBegin(GL_QUADS);
    glVertex3f(c.x + 0.3f, c.y + 0.35f, c.z);
    glVertex3f(c.x + 0.3f, c.y - 0.35f, c.z);
    glVertex3f(c.x - 0.3f, c.y - 0.35f, c.z);
    glVertex3f(c.x - 0.3f, c.y + 0.35f, c.z);
    glEnd();
    glColor3f(0, 0, 0);
}

void Map::drawPathLine() {
    glLineWidth(3);
    glBegin(GL_LINE_STRIP);
    for (const auto* path : {&committedPath, &pendingPath})
        for (const PathStep& s : *path) {
            glColor4f(s.red, s.green, s.blue, 0.75f);
            glVertex3f(s.cell->centre.x, s.cell->centre.y, s.cell->centre.z);
        }
    glEnd();
    glLineWidth(1);
}

void Map::onWheel(int delta) {
    // Towards the pointer: one notch changes the camera's height by a tenth, along the ray.
    float u, v;
    viewCoordinates(static_cast<float>(mouseX), static_cast<float>(mouseY), u, v);
    Vector3 d = camera.rayThrough(u, v);
    float z = camera.position().z;
    if (d.z == 0) return; // a level ray moves nothing
    float t = z * static_cast<float>(-delta) / (10 * d.z);
    float after = z + t * d.z;
    if (after > 1 && after < 1000) camera.move(d.x, d.y, d.z, true, t);
}
