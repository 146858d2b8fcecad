// The ground picture's check: what the image library may be given, and the one line that tells the
// user why a picture was refused.
#include <cstring>

#include "map/ground_picture.h"
#include "temp_dir.h"

namespace {
class GroundPicture : public TempDirTest {
  protected:
    static std::string picture(const char* name) {
        return read(std::string(HEXFOLD_TEST_DATA) + "/fuzz/ground_picture/" + name);
    }
};

// The picture with a header word changed.
std::string withWord(std::string bytes, std::size_t at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<char>(value >> (8 * i));
    return bytes;
}

TEST_F(GroundPicture, OnlyFlatPicturesOfKnownFormatsWhoseLevelsAllLieInTheFileAreLetThrough) {
    const std::string dxt1 = picture("dxt1_8x8_mipmaps.dds"), rgb = picture("rgb_2x8_mipmaps.dds");
    const std::pair<std::string, const char*> cases[] = {
        {dxt1, nullptr},
        {picture("dxt3_4x4.dds"), nullptr},
        {picture("dxt5_16x4_mipmaps.dds"), nullptr},
        {picture("rgba_4x4.dds"), nullptr},
        {rgb, nullptr},
        {dxt1 + "more", nullptr},
        {dxt1.substr(0, dxt1.size() - 1), "is shorter than its header says"},
        {rgb.substr(0, rgb.size() - 1), "is shorter than its header says"},
        {dxt1.substr(0, 127), "is no DDS picture"},
        {"PNG " + dxt1.substr(4), "is no DDS picture"},
        {withWord(dxt1, 4, 125), "has a damaged header"},
        {withWord(dxt1, 76, 0), "has a damaged header"},
        {withWord(dxt1, 88, 33), "has a damaged header"},
        {withWord(dxt1, 88, 32), nullptr},
        {withWord(dxt1, 112, 0x200), "is no flat picture"},
        {withWord(dxt1, 112, 0x200000), "is no flat picture"},
        {withWord(withWord(dxt1, 8, 0x800000), 24, 2), "is no flat picture"},
        {withWord(dxt1, 16, 6), "has a side that is no power of two from 1 to 4096"},
        {withWord(dxt1, 12, 0), "has a side that is no power of two from 1 to 4096"},
        {withWord(dxt1, 12, 8192), "has a side that is no power of two from 1 to 4096"},
        {withWord(dxt1, 16, 0x80000000), "has a side that is no power of two from 1 to 4096"},
        {withWord(dxt1, 84, 0x30315844), "is in a format that the program does not read"}, // DX10
        {withWord(rgb, 88, 16), "is in a format that the program does not read"},
        {withWord(dxt1, 28, 5), "announces more mipmap levels than its size allows"},
        {withWord(dxt1, 28, 0xffffffff), "announces more mipmap levels than its size allows"},
        {withWord(withWord(dxt1, 12, 4096), 20, 0), "is shorter than its header says"},
        {withWord(dxt1, 20, 0), nullptr},
        {withWord(rgb, 20, 2 * 8 * 3), nullptr},
        {withWord(dxt1, 20, 0xda000020), "states a size that its sides do not give"},
        {withWord(dxt1, 20, 16), "states a size that its sides do not give"},
        {withWord(rgb, 20, 7), "states a size that its sides do not give"},
    };
    for (const auto& [bytes, fault] : cases) {
        const char* said = groundPictureFault(bytes);
        EXPECT_TRUE(fault ? said && std::strcmp(said, fault) == 0 : said == nullptr)
            << (said ? said : "let through") << ", wanted " << (fault ? fault : "let through");
    }
}

TEST_F(GroundPicture, ARefusedOrMissingPictureIsOneLineOnStandardError) {
    write("back.dds", picture("dxt1_8x8_mipmaps.dds").substr(0, 150));
    for (const char* name : {"back.dds", "missing.dds"}) {
        ::testing::internal::CaptureStderr();
        EXPECT_FALSE(readGroundPicture(name));
        EXPECT_EQ(::testing::internal::GetCapturedStderr(),
                  std::string(name) +
                      (name[0] == 'b' ? ": is shorter than its header says" : ": cannot be opened") +
                      "; the map goes without a ground picture\n");
    }
}
} // namespace
