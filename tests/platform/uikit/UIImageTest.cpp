// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UIColor.h"
#include "platform/uikit/UIImage.h"
#include "platform/uikit/UIImageView.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"

namespace platform {
namespace {

using doubles::required;

/// The beginning of a PNG of that size: what tells its dimensions.
Data png(std::uint8_t width, std::uint8_t height) {
    Data data{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
    data.insert(data.end(), {0, 0, 1, width, 0, 0, 0, height, 8, 6, 0, 0, 0, 1, 2, 3, 4});
    return data;
}

class Images : public testing::Test {
  protected:
    std::shared_ptr<UIImage> named(std::string_view name) const {
        return UIImage::imageNamed_inBundle(name, Bundle::bundleWithPath("/B.bundle"));
    }

    doubles::Phone phone_;
};

TEST_F(Images, fileWithAScaleInItsName_hasItsSizeInPoints) {
    phone_.files->put("/S/SpeakerMute@2x.png", png(4, 40));
    const auto image = UIImage::imageWithContentsOfFile("/S/SpeakerMute@2x.png");
    ASSERT_NE(nullptr, image);
    EXPECT_EQ("SpeakerMute@2x", image->name());
    EXPECT_EQ("/S/SpeakerMute@2x.png", image->path());
    EXPECT_EQ(2.0, image->scale());
    EXPECT_EQ((Size{130, 20}), image->size());
}

TEST_F(Images, fileWithoutAScale_isOfScaleOne) {
    phone_.files->put("/S/nav.png", png(0, 9));
    EXPECT_EQ((Size{256, 9}), UIImage::imageWithContentsOfFile("/S/nav.png")->size());
}

TEST_F(Images, whatIsNoPicture_isNil) {
    Data wrongSignature = png(1, 1);
    wrongSignature[0] = 'x';
    Data otherChunk = png(1, 1);
    otherChunk[12] = 'J';
    Data negativeHeight = png(1, 1);
    negativeHeight[20] = 0x80;
    phone_.files->put("/signature.png", wrongSignature);
    phone_.files->put("/chunk.png", otherChunk);
    phone_.files->put("/zero.png", png(1, 0));
    phone_.files->put("/negative.png", negativeHeight);
    phone_.files->put("/empty.png", Data{});
    for (const char* path :
         {"/signature.png", "/chunk.png", "/zero.png", "/negative.png", "/empty.png", "/none.png"}) {
        EXPECT_EQ(nullptr, UIImage::imageWithContentsOfFile(path)) << path;
    }
}

TEST_F(Images, everyTruncatedHeader_isNil) {
    const Data whole = png(1, 1);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        phone_.files->put("/cut.png",
                          Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        EXPECT_EQ(nullptr, UIImage::imageWithContentsOfFile("/cut.png")) << length;
    }
    phone_.files->put("/cut.png", whole);
    EXPECT_NE(nullptr, UIImage::imageWithContentsOfFile("/cut.png"));
}

TEST_F(Images, namedImage_takesTheScreensScaleAndKeepsTheResourceName) {
    phone_.files->put("/B.bundle/nav.png", png(0, 10));
    phone_.files->put("/B.bundle/nav@2x.png", png(0, 20));
    phone_.files->put("/B.bundle/nav@3x.png", png(0, 30));
    for (const int scale : {1, 2, 3}) {
        phone_.facts->scale = scale;
        const auto image = named("nav");
        ASSERT_NE(nullptr, image);
        EXPECT_EQ("nav", image->name());
        EXPECT_EQ(scale, image->scale());
        EXPECT_EQ(10.0, image->size().height);
    }
}

TEST_F(Images, namedImageWithoutTheScreensScale_takesTheNearestLargerElseTheLargestSmaller) {
    phone_.facts->scale = 1;
    phone_.files->put("/B.bundle/large@3x.png", png(0, 1));
    phone_.files->put("/B.bundle/large@2x.png", png(0, 1));
    EXPECT_EQ(2.0, named("large")->scale());
    phone_.facts->scale = 3;
    phone_.files->put("/B.bundle/small.png", png(0, 1));
    phone_.files->put("/B.bundle/small@2x.png", png(0, 1));
    EXPECT_EQ(2.0, named("small")->scale());
}

TEST_F(Images, namedImageOfBadBytes_givesWayToTheNextScale) {
    phone_.files->put("/B.bundle/nav@2x.png", "not a picture");
    phone_.files->put("/B.bundle/nav.png", png(0, 10));
    EXPECT_EQ("/B.bundle/nav.png", named("nav")->path());
    EXPECT_EQ(nullptr, named("none"));
    EXPECT_EQ(nullptr, named(""));
}

TEST_F(Images, patternsOfTheSameFile_areEqual) {
    phone_.files->put("/nav.png", png(0, 10));
    const auto one = UIColor::colorWithPatternImage(required(UIImage::imageWithContentsOfFile("/nav.png")));
    const auto other = UIColor::colorWithPatternImage(required(UIImage::imageWithContentsOfFile("/nav.png")));
    EXPECT_TRUE(one->isEqual(*other));
    EXPECT_FALSE(one->isEqual(*other->colorWithAlphaComponent(0.5)));
}

TEST_F(Images, areaOfOneColour_keepsColourSizeAndCorners) {
    const auto area = UIImage::imageFilledWithColor(UIColor::redColor(), {29, 20});
    ASSERT_NE(nullptr, area);
    EXPECT_EQ((Size{29, 20}), area->size());
    EXPECT_EQ(0, area->cornerRadius());
    const auto rounded = required(area->withCornerRadius(10));
    EXPECT_EQ(10, rounded->cornerRadius());
    EXPECT_EQ((Size{29, 20}), rounded->size());
    EXPECT_TRUE(required(rounded->fillColor())->isEqual(*UIColor::redColor()));
    EXPECT_EQ(0, area->cornerRadius()) << "the first one stays as it was";
    EXPECT_EQ(nullptr, UIImage::imageFilledWithColor(nullptr, {1, 1}));
}

TEST_F(Images, roundedPicture_isTheSameFile) {
    phone_.files->put("/nav@2x.png", png(4, 40));
    const auto picture = required(UIImage::imageWithContentsOfFile("/nav@2x.png"));
    const auto rounded = required(picture->withCornerRadius(4));
    EXPECT_EQ(picture->path(), rounded->path());
    EXPECT_EQ(picture->name(), rounded->name());
    EXPECT_EQ(picture->scale(), rounded->scale());
    EXPECT_EQ(picture->size(), rounded->size());
}

TEST_F(Images, imageView_isAsLargeAsItsImage) {
    phone_.files->put("/logo@2x.png", png(4, 40));
    const auto view = std::make_shared<UIImageView>(UIImage::imageWithContentsOfFile("/logo@2x.png"));
    EXPECT_EQ((Rect{0, 0, 130, 20}), view->frame());
    EXPECT_EQ((Rect{}), std::make_shared<UIImageView>(nullptr)->frame());
}

}  // namespace
}  // namespace platform
