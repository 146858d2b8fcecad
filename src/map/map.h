// Map: the tactical map, a window that owns a grid of cells, shows them in 3D through a free camera,
// answers questions of space (which cell lies where, how far, which way) and turns the pointer into
// statements about cells through six delegates. Also the layer flags, path steps and map files.
#pragma once

#include <deque>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "map/camera.h"
#include "map/cell.h"
#include "toolkit/window.h"

class Character;
class MapMesh;

// One entry of a way: the cell, and the colour of the path line there.
struct PathStep {
    Cell* cell;
    float red, green, blue;
};

// Which terrain layers the map paints over the ground; written by the combat window's switches.
extern bool showLight;
extern bool showSmoke;
extern bool showProtection;
extern bool showDifficulty;
extern bool showWalls;

// File name to OpenGL texture name, for the whole run; a texture is never forgotten.
extern std::map<std::string, unsigned int> textureCache;
// The texture of a DDS picture, with mipmaps, read once per name. A file that is missing or that
// readGroundPicture refuses gives 0, cached all the same; whatever the image library makes of a
// file it lets through is cached too. Without a window there is no context to make a texture in,
// and 0 comes back.
unsigned int loadTexture(const char* name);
// The picture of the ground spans 26.5 map units and runs on under all cells as one picture,
// whatever their height: its texture coordinates are the map's x and y, scaled by 2/53 and shifted
// by -1/53 in y.
constexpr float groundTextureScale = 0.0377358f;
constexpr float groundTextureShift = -0.0188679f;

class Map : public Window {
  public:
    // An empty grid at (0, 0), size 1 x 1; place it with setArea.
    explicit Map(Window* parent);
    ~Map() override;

    void draw(float alpha) override;
    // Zooms towards the pointer.
    void onWheel(int delta) override;
    // Hovering; panning while the right button is held, turning while the third is.
    void onMouseMove(int dx, int dy) override;
    // The third button gives the map the keys.
    void onButtonDown(int button) override;
    // Right shift lays the proposed way down; otherwise a click on the hovered cell is reported.
    void onLeftClick() override;
    // Opens the sheet of the hovered cell's occupant (one more each time) or the free cell's editor,
    // and resets a way that was laid down.
    void onRightClick() override;
    // A character's list entry puts the character on the hovered cell. The drop counts as refused,
    // so that the entry stays in its list.
    bool acceptsDrop(Window* dragged) override;

    virtual void reservedHook();
    // Where the ray through a pixel meets the plane z = planeZ.
    virtual void screenToPlane(float px, float py, Vector3* out, float planeZ);
    // The first cell that the ray through a pixel touches, top or flank; hit is where.
    virtual Cell* pick(float px, float py, Vector3* hit);
    // Walks the straight line between two cells: to when nothing is in the way, the cell that stands
    // higher than the line where the line leaves it, or null when the line runs off the map.
    virtual Cell* traceLine(Cell* from, Cell* to);
    // The cell whose outline holds a point of the map plane, or null. Here: a grid of unit squares.
    virtual Cell* cellAt(float x, float y);
    // Replaces the map's file whole, so that the file is at every moment the old map or the new one;
    // a file that cannot be written leaves everything as it was and says why on standard error.
    virtual void save();
    virtual void write(std::ostream& out);
    virtual void setArea(float x, float y, float width, float height);
    // These two are the only way the view rectangle follows the window: the map does not follow
    // its parent.
    virtual void setPosition(float x, float y);
    virtual void setSize(float width, float height);

    // Rebuilds pendingPath from the end of committedPath, or the mover's cell, to hovered.
    void findPath(Character* mover);
    // Lays pendingPath down at the end of committedPath; with nothing proposed, changes nothing.
    void commitPath();
    void clearPendingPath();
    void clearCommittedPath();
    // The end of a rolled move along committedPath: a roll at or above the way's total difficulty
    // takes the mover to its end and gives 0; a lower one brings the mishap of the margin on the
    // mover, who gets along the whole way, about half of it or about a quarter, and gives the
    // margin. The way is cleared either way. In move_resolution.cpp.
    int resolveMove(int roll, Character* mover);

    // A cell's terrain, walls or height changed: the next frame shows it. The map keeps the geometry
    // of its cells from frame to frame, so a change that is not announced does not show.
    void cellChanged(Cell* cell);
    // A cell is being edited by a window that writes its fields directly, without telling anyone:
    // while the cell has observers, the map looks at it each frame and shows what changed; when it
    // has none any more, the map forgets it after a last look.
    void followCell(Cell* cell);
    // Bytes that the kept geometry of the cells takes.
    std::size_t geometryBytes() const;

    // The draw in steps, for a drawing of the cells from elsewhere (the golden pictures' reference):
    // beginView takes the OpenGL state over, with the lens, the camera and the depth test; endView
    // draws the frame round the view and gives the state back.
    void beginView();
    void endView();
    // The occupant's mark on its cell, if it has one.
    static void drawMark(const Cell* cell);
    // Through the laid-down way and the proposed one, in the colours of their speeds.
    void drawPathLine();

    Camera camera;
    int columns = 0, rows = 0;
    // Row by row, each row by ascending column; all point into one block that the map owns.
    std::vector<Cell*> cells;
    unsigned int texture = 0; // the ground picture
    std::deque<PathStep> committedPath;
    std::deque<PathStep> pendingPath;
    float committedLength = 0;
    float pendingLength = 0; // along both ways; 0 when nothing is proposed
    int committedDifficulty = 0;
    int pendingDifficulty = 0;
    int requiredRoll = 0; // the movement table's entry for the whole way
    bool showPath = true;
    Cell* hovered = nullptr; // the cell under the pointer; kept when the pointer leaves the map
    float viewLeft = 0, viewTop = 0, viewWidth = 0, viewHeight = 0; // pixels, top-left origin
    float reservedA = 0, reservedB = 0; // from the file header, written back unread

    Delegate dropHandler;
    Delegate occupiedClickHandler;
    Delegate occupiedHoverHandler;
    Delegate emptyClickHandler;
    Delegate emptyHoverHandler;
    Delegate pathResetHandler;

  protected:
    // A block of columns x rows new cells and the table that points into it; no geometry.
    void makeCells(int columns, int rows);
    void saveAs(const char* fileName);

  private:
    void moveByKeys();
    MapMesh& meshOf();
    void pan(int dx, int dy, bool overCell);
    void turn(int dx, int dy, bool overCell);
    // u and v of a pixel: -1 at the view's left and top edges, 1 at the right and bottom.
    void viewCoordinates(float px, float py, float& u, float& v) const;

    std::unique_ptr<Cell[]> cellBlock;
    std::unique_ptr<MapMesh> mesh; // made at the first draw or the first cell followed
};

// 0 without a first cell; else the distance between the centres, height included.
float distance(Cell* a, Cell* b);
// In the xy plane: the ray parameter at which the ray crosses segment ab, in lengths of direction
// (negative behind the origin); 0 when the origin lies on the segment's line; -1 when the ray's line
// misses the segment or runs parallel to it.
float raySegment(Vector3 origin, Vector3 direction, Vector3 a, Vector3 b);
// Puts the character on the cell, taking it off its old cell if it still stands there. An earlier
// occupant of the new cell is not told.
void placeCharacter(Character* c, Cell* cell);

// Reads "qm2207.map6" into a new HexMap under parent. Null when the file cannot be opened or its
// header is implausible: columns or rows below 1 or above maxMapSide, or more than maxMapCells
// cells, which one line on standard error tells.
Map* loadMap(Window* parent);
// The same from a stream; the file's name is for the message.
Map* loadMap(std::istream& in, const std::string& fileName, Window* parent);
inline constexpr int maxMapSide = 1024;
// 512 x 512: a larger map makes every path search and every frame slow, and its cells hundreds of
// megabytes.
inline constexpr int maxMapCells = 262144;
// The map file, or when there is none to be had, a flat 32 x 24 grid on the ground "back.dds".
Map* openMap(Window* parent);
