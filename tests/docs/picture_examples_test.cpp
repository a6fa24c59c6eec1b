// picture_examples_test.cpp - the bytes shown for picture files.

#include "docs/documented_bytes.h"

#include "qxv/image.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using docs_test::Documented;
using docs_test::Hex;

// What the writer makes of a frame that already has the type's own layout.
std::string Written(const QXChar* name, int width, int height, const std::string& pixels, unsigned layout = QXV_LAYOUT_BGR) {
  const support::TempFolder folder;
  const support::Text file = folder.File(name);
  const QXVImageInfo info{QXV_IMAGE_TYPE_OTHER, 1, layout, width, height, 0, 0};
  const std::unique_ptr<CQXVImageWriter> writer(QXVCOMMONLIB_GetImageWriter());
  EXPECT_EQ(writer->Create(file.c_str(), &info), 0);
  EXPECT_EQ(writer->WriteRawFrame(0, reinterpret_cast<const unsigned char*>(pixels.data())), 0);
  return support::ReadBytes(file);
}

TEST(PictureExamples, Bmp) { EXPECT_EQ(Hex(Written(QXT("a.bmp"), 1, 1, "\x11\x22\x33")), Documented("bmp")); }

TEST(PictureExamples, Tga) {
  EXPECT_EQ(Hex(Written(QXT("a.tga"), 1, 1, "\x11\x22\x33\x44", QXV_LAYOUT_BGRA)), Documented("tga"));
}

TEST(PictureExamples, Pcx) {
  EXPECT_EQ(Hex(Written(QXT("a.pcx"), 2, 1, "abcdef").substr(128)), Documented("pcx-pixels"));
  EXPECT_EQ(Hex(Written(QXT("a.pcx"), 100, 1, std::string(300, '\xC8')).substr(128)), Documented("pcx-runs"));
}

TEST(PictureExamples, Yuv) { EXPECT_EQ(Hex(Written(QXT("a.yuv"), 2, 1, "abcdef")), Documented("yuv")); }

TEST(PictureExamples, Gif) {  // behind the palette, before the trailer
  const std::string file = Written(QXT("a.gif"), 1, 1, std::string(3, '\0'));
  ASSERT_GT(file.size(), 782u);
  EXPECT_EQ(Hex(file.substr(781, file.size() - 782)), Documented("gif-frame"));
}

TEST(PictureExamples, JpgBeginsAsShown) {
  const std::string shown = Documented("jpg-beginning");
  EXPECT_EQ(Hex(Written(QXT("a.jpg"), 37, 21, std::string(37 * 21 * 3, '\x80'))).substr(0, shown.size()), shown);
}

}  // namespace
