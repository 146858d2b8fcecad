// Map display: the camera's keys, the cells as textured prisms on the plane z = 0, the terrain
// layers, the occupants' marks, the path line and the frame. The map's draw takes the OpenGL state
// over for one call and gives back what it changed, since the 2D toolkit draws right after it.
#include <GL/gl.h>

#include "map/map.h"
#include "platform/glfw2.h"
#include "rules/character.h"
#include "rules/faction.h"
#include "toolkit/input_state.h"

namespace {
// The picture of the ground spans 26.5 map units and runs on under all cells as one picture,
// whatever their height: 2/53 and -1/53.
constexpr float textureScale = 0.0377358f;
constexpr float textureShift = -0.0188679f;

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
    // Depth function, polygon offset, line width, texture binding and current colour come back
    // as they were; matrices are pushed and popped; the rest is set back by hand below.
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

    // Only the ground is textured: lines, layers, marks and the path show their own colours.
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glDisable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture);
    for (Cell* cell : cells)
        drawCell(cell);
    if (pendingLength != 0 && showPath) drawPathLine();

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

void Map::drawCell(const Cell* cell) {
    if (showWalls) {
        // Ahead of the prism: the depth test then keeps the red over the black outline. Equal depths
        // pass, so that a wall also shows over the outline of a neighbour drawn before this cell.
        glDepthFunc(GL_LEQUAL);
        glColor4f(1, 0, 0, 1);
        glLineWidth(1);
        drawWalls(cell);
        glDepthFunc(GL_LESS);
    }
    glColor4f(1, 1, 1, 1);
    drawPrism(cell);
    // Each layer repaints the faces over what the passes before left there.
    if (showLight && cell->light) drawLayer(cell, 0, 0, 0, cell->light.dice * 0.15f);
    if (showSmoke && cell->cover) drawLayer(cell, 1, 1, 1, cell->cover.dice * 0.15f);
    if (showProtection && cell->protect) drawLayer(cell, 0, 1, 0, cell->protect.dice * 0.15f);
    if (showDifficulty) {
        // Difficulty 1 is pure green, 16 pure yellow, 31 pure red.
        float t = (static_cast<float>(cell->difficulty) - 1) / 30;
        float m = t > 1 - t ? t : 1 - t;
        drawLayer(cell, t / m, (1 - t) / m, 0, 0.5f);
    }
    if (Character* occupant = cell->occupant) {
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
}

void Map::drawWalls(const Cell* cell) {
    glBegin(GL_LINES);
    for (int i = 0; i < cell->sides; ++i) {
        if (!cell->walls[i]) continue;
        const Vector3 &a = cell->corners[i], &b = cell->corners[(i + 1) % cell->sides];
        glVertex3f(a.x, a.y, a.z);
        glVertex3f(b.x, b.y, b.z);
    }
    glEnd();
}

void Map::drawFaces(const Cell* cell, bool textured) {
    // The faces lie a little behind the lines.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1, 0.5f);
    if (textured) glEnable(GL_TEXTURE_2D);
    int n = cell->sides;
    const Vector3* k = cell->corners.get();
    // Top: from the last corner to the first, the winding that the culling keeps under the
    // flipped projection. Texture coordinates are the map's own x and y.
    glBegin(GL_TRIANGLE_FAN);
    for (int i = n - 1; i >= 0; --i) {
        glTexCoord2f(k[i].x, k[i].y);
        glVertex3f(k[i].x, k[i].y, k[i].z);
    }
    glEnd();
    // Flank, down to the plane z = 0 on which every prism stands.
    glBegin(GL_QUAD_STRIP);
    for (int j = 0; j <= n; ++j) {
        const Vector3& c = k[j % n];
        glTexCoord2f(c.x, c.y);
        glVertex3f(c.x, c.y, 0);
        glVertex3f(c.x, c.y, c.z);
    }
    glEnd();
    if (textured) glDisable(GL_TEXTURE_2D);
    glDisable(GL_POLYGON_OFFSET_FILL);
}

void Map::drawPrism(const Cell* cell) {
    glMatrixMode(GL_TEXTURE);
    glPushMatrix();
    glTranslatef(0, textureShift, 0);
    glScalef(textureScale, textureScale, 1);
    drawFaces(cell, true);
    glColor3f(0, 0, 0);
    int n = cell->sides;
    const Vector3* k = cell->corners.get();
    glBegin(GL_LINE_LOOP);
    for (int i = 0; i < n; ++i)
        glVertex3f(k[i].x, k[i].y, k[i].z);
    glEnd();
    glBegin(GL_LINES);
    for (int i = 0; i < n; ++i) {
        glVertex3f(k[i].x, k[i].y, 0);
        glVertex3f(k[i].x, k[i].y, k[i].z);
    }
    glEnd();
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
}

void Map::drawLayer(const Cell* cell, float red, float green, float blue, float alpha) {
    // The faces have the depth of the base pass, which a plain less-than test would refuse, and
    // they go untextured, or white smoke and black darkness would vanish into the ground's colours.
    // An alpha above 1 counts as 1.
    glDepthFunc(GL_LEQUAL);
    glColor4f(red, green, blue, alpha);
    drawFaces(cell, false);
    glDepthFunc(GL_LESS);
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
