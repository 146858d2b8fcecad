// The ground picture: a DDS file, checked against its own header before the image library sees it,
// since the library trusts the sizes that a damaged header claims.
#pragma once

#include <string_view>

// Why these bytes must not go to the image library as the ground picture; null when they may. The
// program reads flat DDS pictures whose sides are powers of two up to 4096, compressed as DXT1,
// DXT3 or DXT5 or uncompressed at 24 or 32 bits a pixel; the pitch or linear size, where given,
// must be what the sides give, and every level that the header announces must lie within the file.
const char* groundPictureFault(std::string_view bytes);

// Reads an image file into the image library's bound image. A file that is missing, unreadable or
// refused by groundPictureFault never reaches the library; false then, with one line on standard
// error, and the map goes without a ground picture.
bool readGroundPicture(const char* name);
