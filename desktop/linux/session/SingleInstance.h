// Sees to it that the program runs once a user: who has the name on the session bus runs, and who comes second has the
// running one show its island and ends. Made before any file is touched, or a second start would overwrite the first
// one's settings. Without a session bus there is nobody to ask, and the program runs. Main thread; owned by main.
#pragma once

#include <QtDBus/QDBusVirtualObject>
#include <functional>
#include <optional>
#include <string>

#include "desktop/linux/session/UserIntent.h"

namespace quenlio {

class SingleInstance final : private QDBusVirtualObject {
 public:
  // com.quenlio.app; in a diagnostics run with the suffix .r and the run's identifier, each byte as two hexadecimal
  // digits, since such an identifier may hold what a name may not.
  [[nodiscard]] static std::string serviceName(const std::optional<std::string>& runID);

  // Asks for the name, and waits for the bus's answer. The intent outlives this.
  SingleInstance(const std::string& serviceName, UserIntent& intent);
  ~SingleInstance() override;

  [[nodiscard]] bool isFirst() const { return isFirst_; }
  // For the second one. False when the running one has not answered.
  [[nodiscard]] bool showRunningInstance() const;
  // For the first one: what a second start asks for. One that came before this is set is made up for now.
  void setOnShow(std::function<void()> onShow);

 private:
  [[nodiscard]] QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  QString serviceName_;
  UserIntent& intent_;
  bool isFirst_ = true;
  bool isAsked_ = false;
  std::function<void()> onShow_;
};

}  // namespace quenlio
