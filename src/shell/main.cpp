// The entry point: build the application, run frames until the window closes.
#include "rules/updatable.h"
#include "shell/hexfold.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"

int main() {
    int status = 0;
    {
        Hexfold hexfold;
        // The reason was written to stderr when the window failed to open.
        if (!graphicsOpened())
            status = 1;
        else
            while (frameStep(&hexfold)) {
            }
    }
    // Once the windows that point into the model are gone: what nothing but the list of updatables
    // holds, a grenade still burning, goes with the characters.
    deleteUpdatables();
    return status;
}
