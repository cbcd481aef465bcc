// SPDX-License-Identifier: GPL-3.0-or-later
// Another program: a maximized or full-screen window of one colour, which prints the clicks and
// keys that it receives. usage: backdrop_probe COLOUR [fullscreen]
#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWidget>

#include <cstdio>

namespace {

class Backdrop final : public QWidget {
protected:
    void keyPressEvent(QKeyEvent* event) override {
        std::printf("key %u\n", event->nativeScanCode());
        std::fflush(stdout);
    }

    void mousePressEvent(QMouseEvent* event) override {
        const QPoint position = event->globalPosition().toPoint();
        std::printf("click %d %d\n", position.x(), position.y());
        std::fflush(stdout);
    }
};

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Backdrop backdrop;
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(QString::fromLatin1(argv[1])));
    backdrop.setPalette(palette);
    backdrop.setWindowTitle(QStringLiteral("Backdrop"));
    // Without a window manager nothing makes it as large as that.
    backdrop.setGeometry(QGuiApplication::primaryScreen()->geometry());
    if (argc > 2)
        backdrop.showFullScreen();
    else
        backdrop.showMaximized();
    return QApplication::exec();
}
