// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/UpdaterController.h"

#include "base/TaskScope.h"
#include "platform/system/HttpClient.h"
#include "support/EventLoop.h"
#include "support/FileSizeLimit.h"
#include "support/LoopbackServer.h"

#include <QCoroTask>
#include <QDir>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::LoopbackServer;
using test::runUntil;

namespace {

/// Large enough to come in several pieces.
constexpr qsizetype archiveSize = 5 * 1024 * 1024 + 17;

/// Makes certificates, keys and signatures with a different implementation than the program uses.
class OpenSsl {
public:
    /// Returns the configuration of a server on loopback with a self-signed certificate.
    [[nodiscard]] QSslConfiguration tls(const QString& name) const {
        run(u"req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj "
            u"/CN=%1 "
            "-addext subjectAltName=IP:127.0.0.1 -keyout %1.key -out %1.crt"_s.arg(name));
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(QSslCertificate(contents(name + u".crt"_s)));
        configuration.setPrivateKey(QSslKey(contents(name + u".key"_s), QSsl::Ec));
        return configuration;
    }
    /// Makes a signing key and returns its public half.
    [[nodiscard]] QByteArray publicKey() const {
        run(u"genpkey -algorithm ed25519 -out sign.key"_s);
        run(u"pkey -in sign.key -pubout -outform DER -out sign.pub"_s);
        return contents(u"sign.pub"_s).last(32).toBase64();
    }
    [[nodiscard]] QByteArray signature(const QByteArray& bytes) const {
        QFile file(m_folder.filePath(u"archive"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no file to sign");
        file.close();
        run(u"pkeyutl -sign -inkey sign.key -rawin -in archive -out archive.sig"_s);
        return contents(u"archive.sig"_s).toBase64();
    }

private:
    void run(const QString& command) const {
        QProcess openssl;
        openssl.setWorkingDirectory(m_folder.path());
        openssl.start(u"openssl"_s, command.split(u' '));
        if (!openssl.waitForFinished() || openssl.exitCode() != 0)
            qFatal("openssl: %s", openssl.readAllStandardError().constData());
    }
    [[nodiscard]] QByteArray contents(const QString& name) const {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
};

/// Shared by all tests, because it takes a moment to make.
struct Fixtures {
    OpenSsl openssl;
    QSslConfiguration trusted = openssl.tls(u"trusted"_s);
    QSslConfiguration untrusted = openssl.tls(u"untrusted"_s);
    QByteArray key = openssl.publicKey();
    QByteArray archive = QByteArray("Orvane").repeated(archiveSize / 6 + 1).first(archiveSize);
    QByteArray signature = openssl.signature(archive);

    Fixtures() {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.addCaCertificate(trusted.localCertificate());
        QSslConfiguration::setDefaultConfiguration(configuration);
    }
};

const Fixtures& fixtures() {
    static const Fixtures made;
    return made;
}

/// Records all messages; the test answers for the user.
class RecordingWindow final : public UpdaterWindow {
public:
    using UpdaterWindow::answer;

    [[nodiscard]] bool isOpen() const override { return m_isOpen; }
    void bringToFront() override { ++timesBroughtToFront; }
    void close() override { m_isOpen = false; }
    void showSearch(const UpdaterMessage&) override { show(u"search"_s); }
    void showMessage(const UpdaterMessage& message) override {
        show(message.headline + u": "_s + message.text);
    }
    void showOffer(const UpdaterMessage& message, const QString& notes) override {
        show(message.headline + u": "_s + message.text + u' ' + notes);
    }
    void showProgress(const UpdaterMessage& message) override { show(message.headline); }
    void setProgress(double fraction, const QString&) override { fractions.push_back(fraction); }

    QStringList messages;
    std::vector<double> fractions;
    int timesBroughtToFront = 0;

private:
    void show(const QString& what) {
        m_isOpen = true;
        messages += what;
    }

    bool m_isOpen = false;
};

class UpdaterControllerTest : public testing::Test {
protected:
    UpdaterControllerTest() { make(); }
    ~UpdaterControllerTest() override {
        controller.reset();
        QCoro::waitFor(tasks.join());
    }

    void make() {
        auto recording = std::make_unique<RecordingWindow>();
        window = recording.get();
        controller = std::make_unique<UpdaterController>(
            settings, http, tasks, std::move(recording), [this](const QString& path) {
                revealed += QDir(folder.path()).relativeFilePath(path);
            });
    }
    void serveArchive(LoopbackServer::Answer answer = {.body = fixtures().archive}) {
        server.answers[u"/orvane-2.3.tar.gz"_s] = std::move(answer);
    }
    [[nodiscard]] QByteArray item(const QByteArray& version, const QByteArray& attributes = {},
                                  qint64 length = archiveSize,
                                  const QByteArray& signature = fixtures().signature) const {
        const QString archive = server.origin()->address(u"/orvane-2.3.tar.gz");
        return "<item><sparkle:version>" + version +
               "</sparkle:version><description>&lt;b&gt;Faster.</description><enclosure url=\"" +
               archive.toLatin1() + "\" length=\"" + QByteArray::number(length) +
               "\" sparkle:edSignature=\"" + signature + "\" " + attributes + "/></item>";
    }
    void serveFeed(const QByteArray& items) {
        server.answers[u"/appcast.xml"_s] = {
            .body = "<rss xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
                    "<channel>" +
                    items + "</channel></rss>"};
    }
    /// Waits until all tasks have ended; returns the last message.
    QString outcome() {
        EXPECT_TRUE(runUntil([this] { return tasks.count() == 0; }));
        return window->messages.last();
    }
    QString check() {
        controller->checkForUpdates();
        return outcome();
    }
    QString download() {
        check();
        window->answer(UpdaterAnswer::download);
        return outcome();
    }
    [[nodiscard]] QStringList files() const {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] QStringList requests() const {
        QStringList paths;
        for (const QString& request : server.requests)
            paths += request.section(u' ', 0, 0);
        return paths;
    }

    const QString searchFailed = u"Orvane could not check for updates: "_s;
    const QString downloadFailed = u"Orvane 2.3 could not be downloaded: "_s;
    const QString upToDate = u"Orvane is up to date: You have 2.2.0, the newest version."_s;
    const QString insecure = u"The address, or one it redirects to, is not secure (https)."_s;
    LoopbackServer server{fixtures().trusted};
    LoopbackServer plain;
    QTemporaryDir folder;
    HttpClient http{u"Orvane"_s};
    TaskScope tasks;
    QStringList revealed;
    UpdaterSettings settings{.feed = server.origin()->address(u"/appcast.xml"),
                             .publicKey = fixtures().key,
                             .version = u"2.2.0"_s,
                             .downloadFolder = folder.path()};
    RecordingWindow* window = nullptr;
    std::unique_ptr<UpdaterController> controller;
};

TEST_F(UpdaterControllerTest, DownloadsTheNewestVersionAndShowsItInItsFolder) {
    serveArchive();
    serveFeed(item("2.1") + item("2.3") + item("2.4", "sparkle:os=\"macos\"") + item("2.3b1"));
    EXPECT_EQ(check(), u"Orvane 2.3 is available: You have 2.2.0. Faster."_s);
    EXPECT_EQ(requests(), QStringList{u"/appcast.xml"_s});
    window->answer(UpdaterAnswer::download);
    EXPECT_EQ(outcome(), u"Orvane 2.3 has been downloaded: Signature verified. "
                         "“orvane-2.3.tar.gz” is in your folder “"_s +
                             QDir(folder.path()).dirName() +
                             u"”. Install it to complete the update."_s);
    EXPECT_EQ(files(), QStringList{u"orvane-2.3.tar.gz"_s});
    EXPECT_EQ(revealed, files());
    QFile file(folder.filePath(u"orvane-2.3.tar.gz"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), fixtures().archive);
    EXPECT_FALSE(file.permissions() & (QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther));
    EXPECT_TRUE(std::ranges::is_sorted(window->fractions));
    EXPECT_GE(window->fractions.size(), 4U);
    EXPECT_EQ(window->fractions.back(), 1.0);

    // A second download does not replace the first.
    window->answer(UpdaterAnswer::dismissed);
    download();
    EXPECT_EQ(files(), (QStringList{u"orvane-2.3 (1).tar.gz"_s, u"orvane-2.3.tar.gz"_s}));
    EXPECT_EQ(revealed.last(), u"orvane-2.3 (1).tar.gz"_s);
}

TEST_F(UpdaterControllerTest, ReportsThatThereIsNothingNewer) {
    for (const QByteArray& items :
         {QByteArray(), item("2.2.0-7"), item("3", "sparkle:os='macos'")}) {
        serveFeed(items);
        EXPECT_EQ(check(), upToDate) << items.constData();
        window->answer(UpdaterAnswer::dismissed);
        EXPECT_FALSE(window->isOpen());
    }
}

TEST_F(UpdaterControllerTest, FetchesTheNotesFromTheirLink) {
    const QByteArray link = "<sparkle:releaseNotesLink>/notes.html</sparkle:releaseNotesLink>";
    serveFeed(item("2.3").replace("<description>", link + "<description>"));
    server.answers[u"/notes.html"_s] = {.body = "<h1>Smaller</h1>"};
    EXPECT_EQ(check(), u"Orvane 2.3 is available: You have 2.2.0. Smaller"_s);
    for (const LoopbackServer::Answer& bad :
         {LoopbackServer::Answer{.status = 404, .body = "no"},
          LoopbackServer::Answer{.body = QByteArray(300 * 1024, 'x')},
          LoopbackServer::Answer{.status = 302,
                                 .location = plain.origin()->address(u"/notes").toLatin1()}}) {
        server.answers[u"/notes.html"_s] = bad;
        window->answer(UpdaterAnswer::dismissed);
        EXPECT_EQ(check(), u"Orvane 2.3 is available: You have 2.2.0. Faster."_s);
    }
    EXPECT_TRUE(plain.requests.isEmpty());
}

TEST_F(UpdaterControllerTest, LeavesUpdatesToThePackageManagerWithoutFeedOrKey) {
    for (const auto& [feed, key] :
         {std::pair(QString(), settings.publicKey), std::pair(settings.feed, QByteArray("AAAA"))}) {
        settings.feed = feed;
        settings.publicKey = key;
        make();
        EXPECT_EQ(check(), u"Updates come with your system: This build of Orvane gets its updates "
                           "from the system's package manager."_s);
    }
    EXPECT_TRUE(server.requests.isEmpty());
}

TEST_F(UpdaterControllerTest, ReportsWhyACheckFailed) {
    const struct {
        LoopbackServer::Answer answer;
        QString reason;
    } cases[] = {
        {{.status = 204, .body = {}}, u"The server responded with an error."_s},
        {{.body = "good morning"}, u"The server's response could not be read."_s},
        {{.body = "<html/>"}, u"The server's response is not a list of versions."_s},
        {{.body = "<rss></rss>", .cutAfter = 5}, u"The connection was lost."_s},
        {{.body = QByteArray(2 * 1024 * 1024, ' ')}, u"The server sent more data than expected."_s},
        {{.status = 302, .location = plain.origin()->address(u"/appcast.xml").toLatin1()},
         insecure},
    };
    for (const auto& [answer, reason] : cases) {
        server.answers[u"/appcast.xml"_s] = answer;
        EXPECT_EQ(check(), searchFailed + reason);
        window->answer(UpdaterAnswer::dismissed);
    }
    const LoopbackServer untrusted{fixtures().untrusted};
    for (const auto& [feed, reason] :
         {std::pair{plain.origin()->address(u"/appcast.xml"), insecure},
          std::pair{untrusted.origin()->address(u"/appcast.xml"),
                    u"The server could not be reached."_s}}) {
        settings.feed = feed;
        make();
        EXPECT_EQ(check(), searchFailed + reason);
    }
    EXPECT_TRUE(plain.requests.isEmpty());
    EXPECT_TRUE(untrusted.requests.isEmpty());
}

TEST_F(UpdaterControllerTest, LeavesNothingOfADownloadThatFails) {
    const QByteArray& archive = fixtures().archive;
    QByteArray altered = archive;
    altered[archiveSize / 2] = 'x';
    const QByteArray good = item("2.3");
    const QString badSignature = u"The file's signature is not valid, so it may not come from "
                                 "Orvane's developers. It was deleted."_s;
    enum Fetched { no, yes };
    const struct {
        QByteArray items;
        LoopbackServer::Answer answer;
        QString reason;
        Fetched fetched = yes;
    } cases[] = {
        {good, {.body = altered}, badSignature},
        {item("2.3", {}, archiveSize, "AAAA"), {.body = archive}, badSignature},
        {item("2.3", {}, archiveSize + 1),
         {.body = archive},
         u"The file is shorter than expected."_s},
        {item("2.3", {}, archiveSize - 1),
         {.body = archive},
         u"The server sent more data than expected."_s},
        {good, {.body = archive, .cutAfter = archiveSize / 2}, u"The connection was lost."_s},
        {good, {.status = 503, .body = archive}, u"The server responded with an error."_s},
        {good, {.status = 302, .location = plain.origin()->address(u"/x").toLatin1()}, insecure},
        {item("2.3", {}, 2'000'000'000),
         {.body = archive},
         u"Its size is given as 2.0 GB. Orvane downloads at most 1.0 GB."_s,
         no},
        {item("2.3").replace("https:", "http:"), {.body = archive}, insecure, no},
    };
    for (const auto& [items, answer, reason, fetched] : cases) {
        serveFeed(items);
        serveArchive(answer);
        server.requests.clear();
        EXPECT_EQ(download(), downloadFailed + reason);
        EXPECT_EQ(requests().contains(u"/orvane-2.3.tar.gz"_s), fetched == yes);
        window->answer(UpdaterAnswer::dismissed);
        EXPECT_TRUE(files().isEmpty()) << qPrintable(reason);
    }
    EXPECT_TRUE(plain.requests.isEmpty());
    EXPECT_TRUE(revealed.isEmpty());
}

TEST_F(UpdaterControllerTest, ReportsThatTheFileCannotBeWritten) {
    serveFeed(item("2.3"));
    serveArchive();
    {
        const test::FileSizeLimit full(archiveSize / 2);
        EXPECT_EQ(download(),
                  downloadFailed + u"The file could not be written. Is the disk full?"_s);
    }
    EXPECT_TRUE(files().isEmpty());
    QFile inTheWay(folder.filePath(u"Downloads"_s));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    settings.downloadFolder = inTheWay.fileName();
    make();
    EXPECT_EQ(download(), downloadFailed + u"The download folder is not writable."_s);
    EXPECT_EQ(files(), QStringList{u"Downloads"_s});
    EXPECT_TRUE(revealed.isEmpty());
}

TEST_F(UpdaterControllerTest, StopsADownloadAtOnceAndSilently) {
    serveFeed(item("2.3"));
    serveArchive({.body = fixtures().archive,
                  .cutAfter = archiveSize / 2,
                  .end = LoopbackServer::Answer::End::hanging});
    const std::vector<std::function<void()>> ways{
        [this] { window->answer(UpdaterAnswer::dismissed); },
        [this] { controller->stop(); },
        [this] { controller.reset(); },
    };
    for (const auto& end : ways) {
        check();
        window->answer(UpdaterAnswer::download);
        window->fractions.clear();
        ASSERT_TRUE(runUntil([this] { return !window->fractions.empty(); }));
        ASSERT_EQ(files(), QStringList{u"orvane-2.3.tar.gz.part"_s});
        const qsizetype messagesBefore = window->messages.size();
        end();
        EXPECT_TRUE(files().isEmpty()) << "deleted synchronously";
        if (controller) {
            EXPECT_FALSE(window->isOpen());
            EXPECT_EQ(outcome(), u"Downloading Orvane 2.3"_s);
            EXPECT_EQ(window->messages.size(), messagesBefore);
        } else {
            EXPECT_TRUE(runUntil([this] { return tasks.count() == 0; }));
        }
        EXPECT_TRUE(files().isEmpty());
    }
    EXPECT_TRUE(revealed.isEmpty());
}

TEST_F(UpdaterControllerTest, HasOneWindowForSeveralRequests) {
    server.answers[u"/appcast.xml"_s] = {
        .body = "<rss/>", .cutAfter = 1, .end = LoopbackServer::Answer::End::hanging};
    controller->checkForUpdates();
    ASSERT_TRUE(runUntil([this] { return requests().size() == 1; }));
    controller->checkForUpdates();
    EXPECT_EQ(window->timesBroughtToFront, 1);
    EXPECT_EQ(window->messages, QStringList{u"search"_s});
    window->answer(UpdaterAnswer::dismissed);
    EXPECT_FALSE(window->isOpen());
    EXPECT_EQ(outcome(), u"search"_s);
    serveFeed({});
    EXPECT_EQ(check(), upToDate);
    controller->checkForUpdates();
    EXPECT_EQ(window->timesBroughtToFront, 2);
    EXPECT_EQ(requests().size(), 2);
}

} // namespace
} // namespace orvane
