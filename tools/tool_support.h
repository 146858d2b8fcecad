// What the build's generators share: the one line a tool says when it cannot go on, and writing
// a square picture of 8-bit channels through DevIL.
#pragma once

#include <IL/il.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

// "TOOL: message" on standard error; gives the exit status 1.
inline int failAs(const char* tool, const std::string& message) {
    std::fprintf(stderr, "%s: %s\n", tool, message.c_str());
    return 1;
}

// A channel from 0 to 1, rounded to a byte.
inline unsigned char toByte(double v) {
    return static_cast<unsigned char>(std::lround(std::clamp(v, 0.0, 1.0) * 255));
}

// Writes size x size pixels of 3 (RGB) or 4 (RGBA) bytes each to `path` as `type`: IL_PNG, or
// IL_DDS compressed as DXT1. Gives what went wrong, or nothing.
inline std::string savePicture(const char* path, int size, int channels, unsigned char* pixels, ILenum type,
                               bool topRowFirst) {
    ilInit();
    ILuint image = 0;
    ilGenImages(1, &image);
    ilBindImage(image);
    std::string fault;
    if (!ilTexImage(size, size, 1, static_cast<ILubyte>(channels), channels == 4 ? IL_RGBA : IL_RGB,
                    IL_UNSIGNED_BYTE, pixels)) {
        fault = "cannot make the image";
    } else {
        if (topRowFirst) ilRegisterOrigin(IL_ORIGIN_UPPER_LEFT);
        ilEnable(IL_FILE_OVERWRITE);
        if (type == IL_DDS) ilSetInteger(IL_DXTC_FORMAT, IL_DXT1);
        if (ilSave(type, path) != IL_TRUE) fault = std::string("cannot write ") + path;
    }
    ilDeleteImages(1, &image);
    return fault;
}
