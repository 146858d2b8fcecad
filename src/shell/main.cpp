// The entry point: build the application, run frames until the window closes.
#include "shell/hexfold.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"

int main() {
    Hexfold hexfold;
    // The reason was written to stderr when the window failed to open.
    if (!graphicsOpened()) return 1;
    while (frameStep(&hexfold)) {
    }
    return 0;
}
