#include <QtGui/QFont>
#include <gtest/gtest.h>

#include "desktop/views/common/BalancedText.h"
#include "desktop/views/common/Type.h"

namespace quenlio {
namespace {

int linesIn(const QFontMetrics& metrics, const QString& words, int width) {
  return metrics.boundingRect(QRect(0, 0, width, 0), Qt::TextWordWrap | Qt::AlignHCenter, words).height() /
         metrics.height();
}

TEST(BalancedText, noLineIsLeftWithASingleWord) {
  const QFontMetrics metrics(typeOfSize(12));
  const QString words = QStringLiteral("one two three four five six seven");
  const int all = metrics.horizontalAdvance(words);
  const int widest = all - metrics.horizontalAdvance(QStringLiteral("n"));  // the last word alone does not fit
  ASSERT_EQ(linesIn(metrics, words, widest), 2);
  const int width = balancedWidth(metrics, words, widest);
  EXPECT_LT(width, all * 0.65);
  EXPECT_EQ(linesIn(metrics, words, width), 2);
  EXPECT_EQ(linesIn(metrics, words, width - 2), 3);
}

TEST(BalancedText, aLineThatFitsIsAsWideAsItsWords) {
  const QFontMetrics metrics(typeOfSize(12));
  const QString words = QStringLiteral("one two");
  const int width = balancedWidth(metrics, words, 500);
  EXPECT_GE(width, metrics.horizontalAdvance(words));
  EXPECT_LE(width, metrics.horizontalAdvance(words) + 4);
}

}  // namespace
}  // namespace quenlio
