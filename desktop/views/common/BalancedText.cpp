#include "desktop/views/common/BalancedText.h"

namespace quenlio {
namespace {

constexpr int kStep = 2;  // points

}  // namespace

int balancedWidth(const QFontMetrics& metrics, const QString& words, int widest) {
  const auto heightAt = [&](int room) {
    return metrics.boundingRect(QRect(0, 0, room, 0), Qt::TextWordWrap | Qt::AlignHCenter, words).height();
  };
  const int lowest = heightAt(widest);
  int narrowest = widest;
  for (int room = widest; room > 0 && heightAt(room) == lowest; room -= kStep) {
    narrowest = room;
  }
  return narrowest;
}

}  // namespace quenlio
