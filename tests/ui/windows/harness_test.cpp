// The test harness itself: a failing pixel assertion leaves its image.
#include "uisupport/uitest.h"

#include <QFile>
#include <QImage>

#include <cstdlib>

namespace {

TEST(Harness, FailingPixelAssertionSavesTheImage)
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(qRgb(1, 2, 3));
    EXPECT_TRUE(vxtest::PixelIs(image, 1, 1, RGB(1, 2, 3)));
    const ::testing::AssertionResult wrong = vxtest::PixelIs(image, 1, 1, RGB(9, 9, 9));
    ASSERT_FALSE(wrong);
    const std::string message = wrong.message();
    EXPECT_NE(message.find("0x030201"), std::string::npos) << message;
    const std::size_t at = message.find("saved as ");
    ASSERT_NE(at, std::string::npos);
    const QString path = QString::fromStdString(message.substr(at + 9));
    EXPECT_TRUE(path.contains(QStringLiteral("Harness.FailingPixelAssertionSavesTheImage")));
    QImage saved(path);
    EXPECT_EQ(saved.size(), QSize(4, 3));
    QFile::remove(path);
    EXPECT_FALSE(vxtest::PixelIs(image, 7, 1, RGB(1, 2, 3)));
}

} // namespace
