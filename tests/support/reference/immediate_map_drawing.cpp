// The map's first drawing, immediate mode throughout: the reference for the golden pictures and the
// benchmark.
#include "support/reference/immediate_map_drawing.h"

#include <GL/gl.h>

namespace {
void drawWalls(const Cell* cell) {
    glBegin(GL_LINES);
    for (int i = 0; i < cell->sides; ++i) {
        if (!cell->walls[i]) continue;
        const Vector3 &a = cell->corners[i], &b = cell->corners[(i + 1) % cell->sides];
        glVertex3f(a.x, a.y, a.z);
        glVertex3f(b.x, b.y, b.z);
    }
    glEnd();
}

void drawFaces(const Cell* cell, bool textured) {
    // The faces lie a little behind the lines.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1, 0.5f);
    if (textured) glEnable(GL_TEXTURE_2D);
    int n = cell->sides;
    const Vector3* k = cell->corners;
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

void drawPrism(const Cell* cell) {
    glMatrixMode(GL_TEXTURE);
    glPushMatrix();
    glTranslatef(0, groundTextureShift, 0);
    glScalef(groundTextureScale, groundTextureScale, 1);
    drawFaces(cell, true);
    glColor3f(0, 0, 0);
    int n = cell->sides;
    const Vector3* k = cell->corners;
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

void drawLayer(const Cell* cell, float red, float green, float blue, float alpha) {
    // The faces have the depth of the base pass, which a plain less-than test would refuse, and
    // they go untextured, or white smoke and black darkness would vanish into the ground's colours.
    // An alpha above 1 counts as 1.
    glDepthFunc(GL_LEQUAL);
    glColor4f(red, green, blue, alpha);
    drawFaces(cell, false);
    glDepthFunc(GL_LESS);
}

void drawCell(const Cell* cell) {
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
    Map::drawMark(cell);
}

} // namespace

void drawMapImmediately(Map& map) {
    map.beginView();
    glDisable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, map.texture);
    for (Cell* cell : map.cells)
        drawCell(cell);
    if (map.pendingLength != 0 && map.showPath) map.drawPathLine();
    map.endView();
}

ImmediateMapView::ImmediateMapView(Window* parent, Map& map)
    : Window(parent, map.x, map.y, map.width, map.height, ""), map(map) {
    map.visible = false;
}

void ImmediateMapView::draw(float) {
    drawMapImmediately(map);
}
