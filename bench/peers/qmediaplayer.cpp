// Plays with Qt Multimedia the file that each line of standard input names, in place of the one before.

#include <QAudioOutput>
#include <QCoreApplication>
#include <QMediaPlayer>
#include <QSocketNotifier>
#include <QUrl>

#include <cstdio>

#include "told.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QAudioOutput output;
    QMediaPlayer player;
    player.setAudioOutput(&output);
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&player] {
        const auto path = toldFile();
        if (!path) return QCoreApplication::quit();
        player.stop();
        player.setSource({}); // else the same file would go on being the source
        player.setSource(QUrl::fromLocalFile(QString::fromStdString(*path)));
        player.play();
    });
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
