// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/UpdaterMessages.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace orvane::UpdaterMessages {

using namespace Qt::StringLiterals;

namespace {

QString size(qint64 bytes) {
    return QLocale(QLocale::English).formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

/// A long name without spaces would not be wrapped.
QString shortened(const QString& name) {
    constexpr qsizetype longest = 48;
    if (name.size() <= longest)
        return name;
    return name.first(longest / 2) + u'…' + name.last(longest / 2 - 1);
}

QString reason(TransferError error) {
    switch (error) {
    case TransferError::insecure:
        return u"The address, or one it redirects to, is not secure (https)."_s;
    case TransferError::unreachable:
        return u"The server could not be reached."_s;
    case TransferError::refused:
        return u"The server responded with an error."_s;
    case TransferError::cut:
        return u"The connection was lost."_s;
    case TransferError::tooLong:
        return u"The server sent more data than expected."_s;
    case TransferError::notTaken:
        return u"The file could not be written. Is the disk full?"_s;
    case TransferError::stopped:
        return u"The download was cancelled."_s;
    }
    return {};
}

QString reason(AppcastError error) {
    return error == AppcastError::notXml ? u"The server's response could not be read."_s
                                         : u"The server's response is not a list of versions."_s;
}

QString reason(DownloadError error, qint64 length) {
    switch (error) {
    case DownloadError::tooLarge:
        return u"Its size is given as %1. Orvane downloads at most %2."_s.arg(size(length),
                                                                              size(maximumUpdate));
    case DownloadError::folder:
        return u"The download folder is not writable."_s;
    case DownloadError::tooShort:
        return u"The file is shorter than expected."_s;
    case DownloadError::badSignature:
        return u"The file's signature is not valid, so it may not come from Orvane's "
               "developers. It was deleted."_s;
    }
    return {};
}

} // namespace

UpdaterMessage notForThisBuild() {
    return {u"Updates come with your system"_s,
            u"This build of Orvane gets its updates from the system's package manager."_s};
}

UpdaterMessage searching() {
    return {u"Checking for updates…"_s, {}};
}

UpdaterMessage searchFailed(const SearchFault& fault) {
    return {u"Orvane could not check for updates"_s,
            std::visit([](auto error) { return reason(error); }, fault)};
}

UpdaterMessage upToDate(const QString& version) {
    return {u"Orvane is up to date"_s, u"You have %1, the newest version."_s.arg(version)};
}

UpdaterMessage offer(const AppcastItem& item, const QString& version) {
    return {u"Orvane %1 is available"_s.arg(item.shownVersion), u"You have %1."_s.arg(version)};
}

UpdaterMessage downloading(const AppcastItem& item) {
    return {u"Downloading Orvane %1"_s.arg(item.shownVersion), {}};
}

UpdaterMessage downloadFailed(const AppcastItem& item, const DownloadFault& fault) {
    const DownloadError* own = std::get_if<DownloadError>(&fault);
    return {u"Orvane %1 could not be downloaded"_s.arg(item.shownVersion),
            own != nullptr ? reason(*own, item.length) : reason(std::get<TransferError>(fault))};
}

UpdaterMessage downloaded(const AppcastItem& item, const QString& path) {
    const QFileInfo file(path);
    return {u"Orvane %1 has been downloaded"_s.arg(item.shownVersion),
            u"Signature verified. “%1” is in your folder “%2”. Install it to complete the update."_s
                .arg(shortened(file.fileName()), shortened(file.dir().dirName()))};
}

QString progress(qint64 received, qint64 length) {
    return received < length ? u"%1 of %2"_s.arg(size(received), size(length))
                             : u"Verifying the signature…"_s;
}

} // namespace orvane::UpdaterMessages
