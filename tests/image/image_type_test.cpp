// image_type_test.cpp - the type of a file by its extension.

#include "image/image_type.h"

#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using qxv::ImageType;

TEST(ImageType, ExtensionsOfThreeLettersInEitherCase) {
  const struct {
    const QXChar* name;
    int type;
  } rows[] = {
      {QXT("a.tga"), 1},    {QXT("a.bmp"), 2},        {QXT("a.tif"), 3},  {QXT("a.gif"), 4},
      {QXT("a.pcx"), 5},    {QXT("a.yuv"), 6},        {QXT("a.jpg"), 7},  {QXT("a.png"), 8},
      {QXT("a.TGA"), 1},    {QXT("a.JPG"), 7},        {QXT("a.pNg"), 8},  {QXT("C:\\folder.jpg\\a.b.Gif"), 4},
      {QXT(".bmp"), 2},     {QXT("Z:/a/.tif"), 3},    {QXT("a.jpeg"), 0}, {QXT("a.tiff"), 0},
      {QXT("a.jp"), 0},     {QXT("a.jpg "), 0},       {QXT("a. jpg"), 0}, {QXT("a."), 0},
      {QXT("a"), 0},        {QXT("C:\\a.jpg\\b"), 0}, {QXT(""), 0},       {QXT("a.jpg.txt"), 0},
      {QXT("a.\u0131"), 0}, {QXT("a.t\u0130f"), 0},   {QXT("jpg"), 0},    {QXT("a.\uFF4A\uFF50\uFF47"), 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(static_cast<int>(qxv::TypeOfFile(row.name)), row.type) << support::Printable(row.name);
  }
  EXPECT_EQ(qxv::TypeOfFile(nullptr), ImageType::Other);
}

TEST(ImageType, ANameTooLongToBeSplitHasNone) {
  const support::Text extension = QXT(".bmp");
  EXPECT_EQ(qxv::TypeOfFile((support::Repeat(QXT('a'), 511 - 4) + extension).c_str()), ImageType::Bmp);
  EXPECT_EQ(qxv::TypeOfFile((support::Repeat(QXT('a'), 512 - 4) + extension).c_str()), ImageType::Other);
}

TEST(ImageType, StillsOfOursHaveACodec) {
  const struct {
    ImageType type;
    std::uint32_t layout;
  } rows[] = {{ImageType::Tga, 1}, {ImageType::Bmp, 4}, {ImageType::Pcx, 0x40000000}, {ImageType::Yuv, 8}, {ImageType::Jpg, 4}};
  for (const auto& row : rows) {
    const auto codec = qxv::CodecFor(row.type);
    ASSERT_NE(codec, nullptr) << static_cast<int>(row.type);
    EXPECT_EQ(codec->Layout(), row.layout) << static_cast<int>(row.type);
  }
  for (const auto type : {ImageType::Other, ImageType::Tif, ImageType::Gif, ImageType::Png}) {
    EXPECT_EQ(qxv::CodecFor(type), nullptr) << static_cast<int>(type);
  }
}

}  // namespace
