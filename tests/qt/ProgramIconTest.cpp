// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The pixels of the icon that lie in the program, beside the pictures that they were made of.

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>

namespace logbook {
namespace {

TEST(ProgramIconTest, PixelsAreThoseOfThePictures) {
  for (const int size : {16, 24, 32, 48, 64}) {
    const QString folder = QStringLiteral(TEST_ICON_DIR);
    const QImage picture(folder + QStringLiteral("/%1.png").arg(size));
    ASSERT_EQ(picture.size(), QSize(size, size));
    QFile file(folder + QStringLiteral("/pixels/%1.rgba").arg(size));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << size;
    const QByteArray pixels = file.readAll();
    ASSERT_EQ(pixels.size(), 4 * size * size);
    const QImage image(reinterpret_cast<const uchar*>(pixels.constData()), size, size,
                       QImage::Format_RGBA8888);
    EXPECT_EQ(picture.convertToFormat(QImage::Format_RGBA8888), image) << size;
  }
}

}  // namespace
}  // namespace logbook
