#include "Fakes.h"

#include "format/ComponentPictures.h"
#include "format/Picture.h"

#include <set>

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

/// Takes little-endian numbers off the front of a file.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes)
        : m_rest(bytes) {}
    std::uint32_t number(std::size_t size) {
        std::uint32_t result = 0;
        for (std::size_t i = 0; i < size; ++i) {
            result |= static_cast<std::uint32_t>(m_rest[i]) << 8 * i;
        }
        m_rest = m_rest.subspan(size);
        return result;
    }
    std::vector<std::uint32_t> numbers(const std::vector<std::size_t>& sizes) {
        std::vector<std::uint32_t> result;
        result.reserve(sizes.size());
        for (const std::size_t size : sizes) {
            result.push_back(number(size));
        }
        return result;
    }
    std::span<const std::uint8_t> rest() const { return m_rest; }

private:
    std::span<const std::uint8_t> m_rest;
};

using Numbers = std::vector<std::uint32_t>;

} // namespace

TEST(Pictures, EveryIconIsAnIconFileWithAPaletteAndAMask) {
    std::set<std::string> images;
    for (const std::u16string& name : icons) {
        SCOPED_TRACE(testing::PrintToString(name));
        const auto icon = picture(name, PictureKind::Icon);
        Reader reader(icon->bytes());
        ASSERT_EQ(icon->bytes().size(), 22U + 40 + 1024 + 1024 + 128);
        EXPECT_EQ(reader.numbers({2, 2, 2}), (Numbers{0, 1, 1})); // an icon, one image
        EXPECT_EQ(reader.numbers({1, 1, 1, 1, 2, 2, 4, 4}),
                  (Numbers{32, 32, 0, 0, 1, 8, 40 + 1024 + 1024 + 128, 22}));
        EXPECT_EQ(reader.numbers({4, 4, 4, 2, 2, 4}), (Numbers{40, 32, 64, 1, 8, 0}));
        reader.numbers({4, 4, 4, 4, 4});
        EXPECT_EQ(icon->kind(), PictureKind::Icon);
        EXPECT_EQ(icon->name(), name);
        EXPECT_EQ((Numbers{32, 32, 8}),
                  (Numbers{static_cast<std::uint32_t>(icon->width()),
                           static_cast<std::uint32_t>(icon->height()),
                           static_cast<std::uint32_t>(icon->bitsPerPixel())}));

        const auto palette = reader.rest().first(1024);
        const auto pixels = reader.rest().subspan(1024, 1024);
        const auto mask = reader.rest().subspan(2048);
        int transparent = 0;
        int ink = 0;
        for (std::size_t i = 0; i < 1024; ++i) {
            const std::uint8_t* colour = &palette[std::size_t{pixels[i]} * 4];
            const bool black = colour[0] == 0 && colour[1] == 0 && colour[2] == 0;
            const bool isTransparent = (mask[i / 8] >> (7 - i % 8) & 1) != 0;
            // Another colour than black would tint the background.
            EXPECT_TRUE(black || !isTransparent) << "pixel " << i;
            transparent += isTransparent ? 1 : 0;
            ink += !isTransparent && colour[1] < 64 ? 1 : 0;
        }
        EXPECT_GT(transparent, 100);
        EXPECT_GT(ink, 50);
        images.emplace(icon->bytes().begin(), icon->bytes().end());
    }
    EXPECT_EQ(images.size(), 11U);
}

TEST(Pictures, EveryBitmapIsAnUncompressedBitmapFile) {
    std::set<std::string> images;
    for (const std::u16string& name : bitmaps) {
        SCOPED_TRACE(testing::PrintToString(name));
        const auto bitmap = picture(name, PictureKind::Bitmap);
        Reader reader(bitmap->bytes());
        ASSERT_EQ(bitmap->bytes().size(), 54U + 768);
        EXPECT_EQ(reader.numbers({1, 1, 4, 2, 2, 4}), (Numbers{'B', 'M', 54 + 768, 0, 0, 54}));
        EXPECT_EQ(reader.numbers({4, 4, 4, 2, 2, 4}), (Numbers{40, 16, 16, 1, 24, 0}));
        reader.numbers({4, 4, 4, 4, 4});
        EXPECT_EQ(bitmap->kind(), PictureKind::Bitmap);
        EXPECT_EQ(bitmap->name(), name);
        EXPECT_EQ((Numbers{16, 16, 24}),
                  (Numbers{static_cast<std::uint32_t>(bitmap->width()),
                           static_cast<std::uint32_t>(bitmap->height()),
                           static_cast<std::uint32_t>(bitmap->bitsPerPixel())}));
        const auto pixels = reader.rest();
        const auto white = std::count(pixels.begin(), pixels.end(), 255);
        EXPECT_TRUE(white > 100 && white < 740) << white;
        images.emplace(pixels.begin(), pixels.end());
    }
    EXPECT_EQ(images.size(), 23U);
}

TEST(Pictures, ANameBelongsToOneKind) {
    const auto refused = [](const Value& name, PictureKind kind) {
        return codeOf([&] { picture(name, kind); }) == FailureCode::ResourceNotFound;
    };
    for (const std::u16string& name : icons) {
        EXPECT_TRUE(refused(name, PictureKind::Bitmap)) << testing::PrintToString(name);
    }
    for (const std::u16string& name : bitmaps) {
        EXPECT_TRUE(refused(name, PictureKind::Icon)) << testing::PrintToString(name);
    }
    for (const Value& name : {Value(u"BOL"), Value(u"BOLD.ico"), Value(u""), Value(u"1"), Value(1),
                              Value(true), Value(), Value(ObjectRef())}) {
        EXPECT_TRUE(refused(name, PictureKind::Icon)) << name.index();
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

    format->formats()->Add(u"Plain", u"", u"normal", u"BOLD", u"Plain");
    EXPECT_EQ(narrow<Picture>(format->icon(u"Plain"))->name(), u"NORMAL");
    EXPECT_EQ(codeOf([&] { format->iconSmall(u"Plain"); }), FailureCode::ResourceNotFound);
}
