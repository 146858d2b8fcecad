// The UI driver: opens the window once per process with the scripted backend and gives each test
// a fresh input state and root.
#include "support/ui_driver.h"

#include <GL/gl.h>
#include <IL/il.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <vector>

#include "platform/glfw2.h"
#include "toolkit/balloon.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"
#include "toolkit/input_state.h"

namespace ui {
namespace {
bool started = false;

void startGraphics() {
    if (started) return;
    started = true;
    if (chdir(HEXFOLD_CAMPAIGN_DIR) != 0) return;
    platform::selectBackend(platform::Backend::Scripted);
    // The virtual X server now and then hangs up on a new client at once (about one connection in
    // a few hundred here); a test process tries again rather than failing all of its tests.
    for (int attempt = 0; attempt < 5 && !graphicsOpened(); ++attempt) {
        if (attempt > 0) usleep(200 * 1000);
        setupGraphics();
    }
    if (!graphicsOpened()) return;
    startImageLibrary();
    platform::glfwSetKeyCallback(keyCallback);
}
} // namespace

std::ostream& operator<<(std::ostream& out, const Rgb& c) {
    return out << "rgb(" << c.r << ", " << c.g << ", " << c.b << ")";
}

bool near(Rgb a, Rgb b, int tolerance) {
    return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance &&
           std::abs(a.b - b.b) <= tolerance;
}

Root::Root() : Window(nullptr, 0, 0, 100, 100, "") {
    fontSize = 1.5f;
}

std::string campaignDir() {
    return HEXFOLD_CAMPAIGN_DIR;
}

void UiTest::SetUp() {
    // The root first: a derived fixture may add windows to it even when the set-up failed.
    root = new Root();
    startGraphics();
    ASSERT_TRUE(graphicsOpened()) << "no window: run the UI tests under xvfb-run";
    ASSERT_EQ(chdir(HEXFOLD_CAMPAIGN_DIR), 0);
    platform::script::reset();
    resetInputState();
    // Registering delivers the pointer's present place, (0, 0) after the reset.
    platform::glfwSetMousePosCallback(mousePosCallback);
}

void UiTest::TearDown() {
    delete root;
    root = nullptr;
    if (balloonWindow) delete balloonWindow;
    resetInputState();
    platform::script::reset();
}

void UiTest::frame(int count) {
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(frameStep(root)) << "the frame loop ended";
}

void UiTest::settle() {
    frame(2);
}

int UiTest::toPixelX(float lx) {
    return static_cast<int>(std::lround(lx * pixelsPerUnitX));
}
int UiTest::toPixelY(float ly) {
    return static_cast<int>(std::lround(ly * pixelsPerUnitY));
}

void UiTest::moveTo(float lx, float ly) {
    movePixels(toPixelX(lx), toPixelY(ly));
}

void UiTest::movePixels(int px, int py) {
    platform::script::movePointer(px, py);
    settle();
}

void UiTest::press(int button) {
    platform::script::setButton(button, true);
    settle();
}

void UiTest::release(int button) {
    platform::script::setButton(button, false);
    settle();
}

void UiTest::click(float lx, float ly, int button) {
    moveTo(lx, ly);
    press(button);
    release(button);
}

void UiTest::drag(float fromX, float fromY, float toX, float toY, int steps) {
    moveTo(fromX, fromY);
    press(0);
    // A user's drag starts just past the threshold, where the grab offset is taken.
    movePixels(toPixelX(fromX) + 4, toPixelY(fromY));
    for (int i = 1; i <= steps; ++i)
        moveTo(fromX + (toX - fromX) * i / steps, fromY + (toY - fromY) * i / steps);
    release(0);
}

Rect screenRect(Window* w) {
    Rect r{0, 0, w->width, w->height};
    for (Window* p = w; p; p = p->parent) {
        r.x += p->x;
        r.y += p->y;
    }
    return r;
}

void UiTest::moveOnto(Window* w) {
    Rect r = screenRect(w);
    moveTo(r.centreX(), r.centreY());
}

void UiTest::clickOn(Window* w, int button) {
    Rect r = screenRect(w);
    click(r.centreX(), r.centreY(), button);
}

void UiTest::wheel(int steps) {
    platform::script::turnWheel(steps);
    settle();
}

void UiTest::holdKey(int code) {
    platform::script::setKey(code, true);
    settle();
}

void UiTest::releaseKey(int code) {
    platform::script::setKey(code, false);
    settle();
}

void UiTest::tap(int code) {
    platform::script::setKey(code, true);
    platform::script::setKey(code, false);
    settle();
}

void UiTest::type(const std::string& text) {
    for (char c : text) {
        bool upper = c >= 'A' && c <= 'Z';
        int code = (c >= 'a' && c <= 'z') ? c - 32 : static_cast<unsigned char>(c);
        if (upper) holdKey(platform::KEY_RSHIFT);
        tap(code);
        if (upper) releaseKey(platform::KEY_RSHIFT);
    }
}

Rgb UiTest::pixelAt(int px, int py) {
    unsigned char rgb[3] = {0, 0, 0};
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(px, 767 - py, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, rgb);
    return {rgb[0], rgb[1], rgb[2]};
}

Rgb UiTest::pixel(float lx, float ly) {
    return pixelAt(static_cast<int>(lx * pixelsPerUnitX), static_cast<int>(ly * pixelsPerUnitY));
}

int UiTest::inkIn(float x, float y, float w, float h, Rgb background, int tolerance) {
    return countPixels(x, y, w, h, [&](Rgb c) { return !near(c, background, tolerance); });
}

int UiTest::countPixels(float x, float y, float w, float h, const std::function<bool(Rgb)>& wanted) {
    int x0 = static_cast<int>(std::ceil(x * pixelsPerUnitX)), x1 = static_cast<int>((x + w) * pixelsPerUnitX);
    int y0 = static_cast<int>(std::ceil(y * pixelsPerUnitY)), y1 = static_cast<int>((y + h) * pixelsPerUnitY);
    if (x1 <= x0 || y1 <= y0) return 0;
    std::vector<unsigned char> block(std::size_t(x1 - x0) * std::size_t(y1 - y0) * 3);
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(x0, 768 - y1, x1 - x0, y1 - y0, GL_RGB, GL_UNSIGNED_BYTE, block.data());
    int count = 0;
    for (std::size_t i = 0; i < block.size(); i += 3)
        if (wanted({block[i], block[i + 1], block[i + 2]})) ++count;
    return count;
}

UiTest::Span UiTest::columnsWhere(float x, float y, float w, float h,
                                  const std::function<bool(Rgb)>& wanted) {
    Span s{-1, -1};
    for (int px = static_cast<int>(std::ceil(x * pixelsPerUnitX)); px < (x + w) * pixelsPerUnitX; ++px) {
        float lx = px / pixelsPerUnitX;
        if (countPixels(lx, y, 1 / pixelsPerUnitX, h, wanted) == 0) continue;
        if (s.first < 0) s.first = lx;
        s.last = lx;
    }
    return s;
}

bool savePng(const std::string& path) {
    std::vector<unsigned char> data(1024 * 768 * 3);
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, 1024, 768, GL_RGB, GL_UNSIGNED_BYTE, data.data());
    ILuint image = 0;
    ilGenImages(1, &image);
    ilBindImage(image);
    // Rows come bottom first from OpenGL, which is the lower-left origin of the image library.
    ilTexImage(1024, 768, 1, 3, IL_RGB, IL_UNSIGNED_BYTE, data.data());
    ilRegisterOrigin(IL_ORIGIN_LOWER_LEFT);
    ilEnable(IL_FILE_OVERWRITE);
    bool saved = ilSaveImage(path.c_str()) == IL_TRUE;
    ilDeleteImages(1, &image);
    return saved;
}

std::string UiTest::screenshot(const std::string& name) {
    std::filesystem::create_directories(HEXFOLD_SCREENSHOT_DIR);
    std::string path = std::string(HEXFOLD_SCREENSHOT_DIR) + "/" + name + ".png";
    EXPECT_TRUE(savePng(path)) << "could not write " << path;
    return path;
}

std::string UiTest::guidePicture(const std::string& name) {
    std::string path = screenshot(name);
    if (std::getenv("HEXFOLD_GUIDE_PICTURES")) {
        std::error_code ec;
        std::filesystem::create_directories(HEXFOLD_GUIDE_PICTURE_DIR, ec);
        std::filesystem::copy_file(path, std::string(HEXFOLD_GUIDE_PICTURE_DIR) + "/" + name + ".png",
                                   std::filesystem::copy_options::overwrite_existing, ec);
        EXPECT_FALSE(ec) << "could not copy " << path << " into the guide: " << ec.message();
    }
    return path;
}

} // namespace ui
