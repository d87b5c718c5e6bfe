#include "Fakes.h"

#include "format/ComponentPictures.h"
#include "format/Picture.h"

using namespace fakes;

namespace {

using Names = std::vector<std::u16string>;

const Names icons{u"BOLD", u"ITALIC", u"UNDERLINE", u"ALIGNL",      u"ALIGNC",   u"ALIGNR",
                  u"BIG",  u"SMALL",  u"NORMAL",    u"AAAAAAAAAAA", u"ABBBBBBBB"};
const Names bitmaps{u"BOLDS",   u"ITALICS",     u"UNDERLINES", u"ALIGNLS",    u"ALIGNCS",
                    u"ALIGNRS", u"BIGS",        u"SMALLS",     u"NORMALS",    u"CHECK",
                    u"DOCCHK",  u"DOCUCHK",     u"HE",         u"COLOURTAGS", u"OPENPROJECT",
                    u"OPTIONS", u"REFRESH",     u"REFRESH1",   u"SMV",        u"SPV",
                    u"SUT",     u"SAVEPROJECT", u"VALIDATE"};

std::shared_ptr<Picture> picture(const Value& name, PictureKind kind) {
    return narrow<Picture>(componentPictures()->picture(name, kind));
}

using Bytes = std::vector<std::uint8_t>;

bool isRefused(const Value& name, PictureKind kind) {
    return codeOf([&] { picture(name, kind); }) == FailureCode::ResourceNotFound;
}

/// The picture of that name and kind alone, whose properties and first bytes are as told.
std::shared_ptr<Picture> expectPicture(const std::u16string& name, PictureKind kind,
                                       std::int32_t side, std::int32_t bitsPerPixel,
                                       std::size_t size, const Bytes& header) {
    auto made = picture(name, kind);
    const auto bytes = made->bytes();
    EXPECT_EQ(bytes.size(), size);
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + std::ssize(header)), header);
    EXPECT_TRUE(made->kind() == kind && made->name() == name);
    EXPECT_TRUE(made->width() == side && made->height() == side);
    EXPECT_EQ(made->bitsPerPixel(), bitsPerPixel);
    const bool isIcon = kind == PictureKind::Icon;
    EXPECT_TRUE(isRefused(name, isIcon ? PictureKind::Bitmap : PictureKind::Icon));
    return made;
}

} // namespace

TEST(Pictures, EveryIconIsAnIconFileWithAPaletteAndAMask) {
    std::set<std::string> images;
    for (const std::u16string& name : icons) {
        SCOPED_TRACE(testing::PrintToString(name));
        const auto icon = expectPicture(name, PictureKind::Icon, 32, 8, 62 + 1024 + 1024 + 128,
                                        {0,  0,  1, 0, 1,  0, // an icon file with one image
                                         32, 32, 0, 0, 1,  0, 8, 0, 0xA8, 0x08, 0, 0, 22, 0, 0, 0,
                                         40, 0,  0, 0, 32, 0, 0, 0, 64,   0,    0, 0, 1,  0, 8, 0});
        const auto palette = icon->bytes().subspan(62, 1024);
        const auto pixels = icon->bytes().subspan(62 + 1024, 1024);
        const auto mask = icon->bytes().subspan(62 + 2048);
        int transparent = 0;
        for (std::size_t i = 0; i < 1024; ++i) {
            const std::uint8_t* colour = &palette[std::size_t{pixels[i]} * 4];
            const bool black = colour[0] == 0 && colour[1] == 0 && colour[2] == 0;
            const bool isTransparent = (mask[i / 8] >> (7 - i % 8) & 1) != 0;
            // Another colour than black would tint the background.
            EXPECT_TRUE(black || !isTransparent) << "pixel " << i;
            transparent += isTransparent ? 1 : 0;
        }
        EXPECT_GT(transparent, 100);
        images.emplace(icon->bytes().begin(), icon->bytes().end());
    }
    EXPECT_EQ(images.size(), 11U);
}

TEST(Pictures, EveryBitmapIsAnUncompressedBitmapFile) {
    std::set<std::string> images;
    for (const std::u16string& name : bitmaps) {
        SCOPED_TRACE(testing::PrintToString(name));
        const auto bitmap =
            expectPicture(name, PictureKind::Bitmap, 16, 24, 54 + 768,
                          {'B', 'M', 0x36, 0x03, 0, 0, 0,  0, 0, 0, 54, 0, 0,  0, 40, 0,
                           0,   0,   16,   0,    0, 0, 16, 0, 0, 0, 1,  0, 24, 0, 0});
        const auto pixels = bitmap->bytes().subspan(54);
        images.emplace(pixels.begin(), pixels.end());
    }
    EXPECT_EQ(images.size(), 23U);
}

TEST(Pictures, ANameIsTakenAsAWhole) {
    for (const Value& name : {Value(u"BOL"), Value(u"BOLD.ico"), Value(u""), Value(u"1"), Value(1),
                              Value(true), Value(), Value(ObjectRef())}) {
        EXPECT_TRUE(isRefused(name, PictureKind::Icon)) << name.index();
    }
}

TEST_F(Component, TheCatalogueServesThePicturesOfTheStore) {
    struct WithPictures : FakePlatform {
        std::shared_ptr<PictureStore> pictures() override { return componentPictures(); }
    };
    Platform::install(std::make_shared<WithPictures>());
    const auto doc = build(u"<wml>t</wml>");
    const auto format = doc->Format();
    const auto bold = narrow<Picture>(format->icon(u"bold"));
    const auto first = narrow<Picture>(format->icon(1));
    EXPECT_EQ(bold->name(), u"BOLD");
    EXPECT_NE(bold, first);
    EXPECT_EQ(bold->bytes().data(), first->bytes().data());
    EXPECT_EQ(narrow<Picture>(format->iconSmall(u"Bold"))->name(), u"BOLDS");
}
