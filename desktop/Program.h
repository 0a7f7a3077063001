// The program's one run, from the launch to its end. Main thread.
#pragma once

namespace quenlio {

class AppDelegate;
class Application;
class SingleInstance;

// Launches the application and runs the loop until something ends it: a signal, a logout, or the application itself.
// Before this returns, with the exit code, the application has been told that it terminates. A second start of the
// program shows the island; the instance holds on to the application for that.
[[nodiscard]] int runUntilTermination(AppDelegate& app, Application& application, SingleInstance& instance);

}  // namespace quenlio
