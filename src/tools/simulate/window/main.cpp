// quiverly-laptop-window: the window of the simulated laptop; quiverly-simulate --window starts it.

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include <QApplication>

#include "app/DesktopSettings.h"
#include "app/no_display.h"
#include "app/out_of_memory.h"
#include "app/program.h"
#include "identity.h"
#include "platform/linux/SettingsFile.h"
#include "platform/shared/program_file.h"
#include "platform/shared/program_resources.h"
#include "platform/virtual/VirtualPlatform.h"
#include "tools/simulate/window/LaptopWindow.h"
#include "tools/simulate/window/SimulatorLink.h"
#include "tools/simulate/window/ThresholdSetting.h"

using namespace quiverly;

namespace {

bool isPipe(int descriptor) {
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

} // namespace

// Closing the window ends the program, and with it the simulated laptop.
int main(int argc, char** argv) {
    endWithoutMemory();
    if (!isPipe(STDIN_FILENO) || !isPipe(STDOUT_FILENO)) {
        std::fputs("quiverly-laptop-window: Start quiverly-simulate --window, which starts this program.\n", stderr);
        return 2;
    }
    std::signal(SIGPIPE, SIG_IGN); // a laptop that is gone is a failed write
    endWithoutDisplay();
    QApplication application(argc, argv);
    displayIsThere();
    describeProgram();
    QApplication::setApplicationDisplayName("Quiverly: simulated laptop");
    QApplication::setDesktopFileName(QString(identity::identifier) + ".laptop");

    VirtualPlatform platform;
    platform.resources.folders = programResourceFolders();
    platform.resources.folders.push_back(programFile().parent_path() / QUIVERLY_INSTALLED_RESOURCES);
    LaptopWindow window(platform);
    ThresholdSetting threshold(SettingsFile::nameOfTheUsers());
    window.setThreshold(threshold.value());
    threshold.onChange = [&window](double next) { window.setThreshold(next); };

    SimulatorLink simulator(STDIN_FILENO, STDOUT_FILENO);
    simulator.onMessage = [&window](const window::Message& message) { window.tell(message); };
    simulator.onEnd = [] { QApplication::quit(); };
    window.onCommand = [&simulator](const QByteArray& command) { simulator.send(command); };
    const DesktopSettings settings([&window] { window.show(); });
    return QApplication::exec();
}
