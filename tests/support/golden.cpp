// Golden pictures: reading the frame back, PNG files through the image library, and the comparison.
#include "support/golden.h"

#include <GL/gl.h>
#include <IL/il.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace ui {
namespace {
bool isLine(Rgb c) {
    // Outlines and walls are drawn unblended, in pure black and pure red.
    return c.g == 0 && c.b == 0 && (c.r == 0 || c.r == 255);
}

// Whether a line of the picture lies within a pixel of (x, y).
bool nearLine(const Picture& p, int x, int y) {
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            int nx = x + dx, ny = y + dy;
            if (nx >= 0 && ny >= 0 && nx < p.width && ny < p.height && isLine(p.at(nx, ny))) return true;
        }
    return false;
}
} // namespace

Rgb Picture::at(int x, int y) const {
    const unsigned char* c = &rgb[(std::size_t(y) * std::size_t(width) + std::size_t(x)) * 3];
    return {c[0], c[1], c[2]};
}

Picture readFrame(int left, int top, int width, int height) {
    Picture p{width, height, std::vector<unsigned char>(std::size_t(width) * std::size_t(height) * 3)};
    std::vector<unsigned char> rows(p.rgb.size());
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(left, 768 - top - height, width, height, GL_RGB, GL_UNSIGNED_BYTE, rows.data());
    std::size_t stride = std::size_t(width) * 3;
    for (int y = 0; y < height; ++y) // OpenGL gives the bottom row first
        std::copy_n(&rows[std::size_t(height - 1 - y) * stride], stride, &p.rgb[std::size_t(y) * stride]);
    return p;
}

bool writePicture(const Picture& picture, const std::string& path) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    ILuint image = 0;
    ilGenImages(1, &image);
    ilBindImage(image);
    ilTexImage(picture.width, picture.height, 1, 3, IL_RGB, IL_UNSIGNED_BYTE,
               const_cast<unsigned char*>(picture.rgb.data()));
    ilRegisterOrigin(IL_ORIGIN_UPPER_LEFT);
    ilEnable(IL_FILE_OVERWRITE);
    bool saved = ilSaveImage(path.c_str()) == IL_TRUE;
    ilDeleteImages(1, &image);
    return saved;
}

Picture readPicture(const std::string& path) {
    Picture p;
    ILuint image = 0;
    ilGenImages(1, &image);
    ilBindImage(image);
    if (ilLoadImage(path.c_str()) == IL_TRUE && ilConvertImage(IL_RGB, IL_UNSIGNED_BYTE) == IL_TRUE) {
        p.width = ilGetInteger(IL_IMAGE_WIDTH);
        p.height = ilGetInteger(IL_IMAGE_HEIGHT);
        p.rgb.resize(std::size_t(p.width) * std::size_t(p.height) * 3);
        ilCopyPixels(0, 0, 0, p.width, p.height, 1, IL_RGB, IL_UNSIGNED_BYTE, p.rgb.data());
        if (ilGetInteger(IL_IMAGE_ORIGIN) == IL_ORIGIN_LOWER_LEFT) {
            std::size_t stride = std::size_t(p.width) * 3;
            for (int y = 0; y < p.height / 2; ++y)
                std::swap_ranges(&p.rgb[std::size_t(y) * stride], &p.rgb[std::size_t(y + 1) * stride],
                                 &p.rgb[std::size_t(p.height - 1 - y) * stride]);
        }
    }
    ilDeleteImages(1, &image);
    return p;
}

Departure compare(const Picture& golden, const Picture& seen, Picture* where) {
    Departure d;
    if (golden.width != seen.width || golden.height != seen.height) {
        d.differing = d.offSeam = seen.width * seen.height;
        d.worstOffSeam = 255;
        return d;
    }
    if (where) *where = Picture{seen.width, seen.height, std::vector<unsigned char>(seen.rgb.size())};
    for (int y = 0; y < seen.height; ++y)
        for (int x = 0; x < seen.width; ++x) {
            Rgb a = golden.at(x, y), b = seen.at(x, y);
            unsigned char* mark =
                where ? &where->rgb[(std::size_t(y) * std::size_t(seen.width) + std::size_t(x)) * 3]
                      : nullptr;
            auto paint = [&](Rgb c) {
                if (mark)
                    mark[0] = static_cast<unsigned char>(c.r), mark[1] = static_cast<unsigned char>(c.g),
                    mark[2] = static_cast<unsigned char>(c.b);
            };
            paint({b.r / 4, b.g / 4, b.b / 4});
            if (a == b) continue;
            ++d.differing;
            paint({255, 255, 0});
            if (nearLine(golden, x, y) || nearLine(seen, x, y)) continue;
            ++d.offSeam;
            paint({255, 0, 255});
            d.worstOffSeam =
                std::max({d.worstOffSeam, std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b)});
        }
    return d;
}

} // namespace ui
