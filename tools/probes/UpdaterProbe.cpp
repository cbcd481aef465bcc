// SPDX-License-Identifier: GPL-3.0-or-later
// The real updater with its window, without the rest of the program. Checks for updates at the
// start and for each line on the standard input; ends on SIGTERM. usage: updater_probe FEED KEY
// CERTIFICATE    CERTIFICATE is trusted in addition
#include "base/TaskScope.h"
#include "model/AppConstants.h"
#include "platform/desktop/ShowInFolder.h"
#include "platform/system/HttpClient.h"
#include "platform/system/TerminationSignals.h"
#include "ui/UpdaterDialog.h"
#include "updates/UpdaterController.h"

#include <QApplication>
#include <QCoroTask>
#include <QSocketNotifier>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QStandardPaths>

#include <iostream>
#include <string>

using namespace orvane;

namespace {

/// The real window; prints the headline of each message.
class PrintingWindow final : public UpdaterWindow {
public:
    PrintingWindow() {
        m_dialog.onAnswer([this](UpdaterAnswer given) { answer(given); });
    }

    [[nodiscard]] bool isOpen() const override { return m_dialog.isOpen(); }
    void bringToFront() override {
        m_dialog.bringToFront();
        std::cout << "asked" << std::endl;
    }
    void close() override { m_dialog.close(); }
    void showSearch(const UpdaterMessage& message) override {
        m_dialog.showSearch(message);
        print(message);
    }
    void showMessage(const UpdaterMessage& message) override {
        m_dialog.showMessage(message);
        print(message);
    }
    void showOffer(const UpdaterMessage& message, const QString& notes) override {
        m_dialog.showOffer(message, notes);
        print(message);
    }
    void showProgress(const UpdaterMessage& message) override {
        m_dialog.showProgress(message);
        print(message);
    }
    void setProgress(double fraction, const QString& text) override {
        m_dialog.setProgress(fraction, text);
    }

private:
    static void print(const UpdaterMessage& message) {
        std::cout << "shown " << message.headline.toStdString() << std::endl;
    }

    UpdaterDialog m_dialog;
};

void trust(const QString& certificate) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificates(certificate);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

QCoro::Task<> leave(UpdaterController& updater, TaskScope& tasks) {
    updater.stop();
    co_await tasks.join();
    QCoreApplication::exit(0);
}

} // namespace

int main(int argc, char** argv) {
    QApplication::setQuitOnLastWindowClosed(false);
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    trust(arguments.at(3));
    HttpClient http(AppConstants::appName);
    TaskScope tasks;
    UpdaterController updater(
        {.feed = arguments.at(1),
         .publicKey = arguments.at(2).toLatin1(),
         .version = AppConstants::appVersion,
         .downloadFolder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation)},
        http, tasks, std::make_unique<PrintingWindow>(), showInFolder);
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &application,
                     [&] { leave(updater, tasks); });
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
        std::string line;
        if (std::getline(std::cin, line))
            updater.checkForUpdates();
        else
            input.setEnabled(false);
    });
    updater.checkForUpdates();
    return QApplication::exec();
}
