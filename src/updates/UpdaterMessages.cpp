// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/UpdaterMessages.h"

#include "language/Translation.h"

#include <QDir>
#include <QFileInfo>

namespace orvane::UpdaterMessages {

using namespace Qt::StringLiterals;

namespace {

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
        return translated("Update", "The address, or one it redirects to, is not secure (https).");
    case TransferError::unreachable:
        return translated("Update", "The server could not be reached.");
    case TransferError::refused:
        return translated("Update", "The server responded with an error.");
    case TransferError::cut:
        return translated("Update", "The connection was lost.");
    case TransferError::tooLong:
        return translated("Update", "The server sent more data than expected.");
    case TransferError::notTaken:
        return translated("Update", "The file could not be written. Is the disk full?");
    case TransferError::stopped:
        return translated("Update", "The download was cancelled.");
    }
    return {};
}

QString reason(AppcastError error) {
    return error == AppcastError::notXml
               ? translated("Update", "The server's response could not be read.")
               : translated("Update", "The server's response is not a list of versions.");
}

QString reason(DownloadError error, qint64 length) {
    switch (error) {
    case DownloadError::tooLarge:
        return translated("Update", "Its size is given as %1. Orvane downloads at most %2.")
            .arg(localDataSize(length), localDataSize(maximumUpdate));
    case DownloadError::folder:
        return translated("Update", "The download folder is not writable.");
    case DownloadError::tooShort:
        return translated("Update", "The file is shorter than expected.");
    case DownloadError::badSignature:
        return translated("Update",
                          "The file's signature is not valid, so it may not come from Orvane's "
                          "developers. It was deleted.");
    }
    return {};
}

} // namespace

UpdaterMessage notForThisBuild() {
    return {translated("Update", "Updates come with your system"),
            translated("Update",
                       "This build of Orvane gets its updates from the system's package manager.")};
}

UpdaterMessage searching() {
    return {translated("Update", "Checking for updates…"), {}};
}

UpdaterMessage searchFailed(const SearchFault& fault) {
    return {translated("Update", "Orvane could not check for updates"),
            std::visit([](auto error) { return reason(error); }, fault)};
}

UpdaterMessage upToDate(const QString& version) {
    return {translated("Update", "Orvane is up to date"),
            translated("Update", "You have %1, the newest version.").arg(leftToRight(version))};
}

UpdaterMessage offer(const AppcastItem& item, const QString& version) {
    return {translated("Update", "Orvane %1 is available").arg(leftToRight(item.shownVersion)),
            translated("Update", "You have %1.").arg(leftToRight(version))};
}

UpdaterMessage downloading(const AppcastItem& item) {
    return {translated("Update", "Downloading Orvane %1").arg(leftToRight(item.shownVersion)), {}};
}

UpdaterMessage downloadFailed(const AppcastItem& item, const DownloadFault& fault) {
    const DownloadError* own = std::get_if<DownloadError>(&fault);
    return {translated("Update", "Orvane %1 could not be downloaded")
                .arg(leftToRight(item.shownVersion)),
            own != nullptr ? reason(*own, item.length) : reason(std::get<TransferError>(fault))};
}

UpdaterMessage downloaded(const AppcastItem& item, const QString& path) {
    const QFileInfo file(path);
    return {
        translated("Update", "Orvane %1 has been downloaded").arg(leftToRight(item.shownVersion)),
        translated(
            "Update",
            "Signature verified. “%1” is in your folder “%2”. Install it to complete the update.")
            .arg(leftToRight(shortened(file.fileName())),
                 isolated(shortened(file.dir().dirName())))};
}

QString progress(qint64 received, qint64 length) {
    return received < length ? translated("Update", "%1 of %2")
                                   .arg(localDataSize(received), localDataSize(length))
                             : translated("Update", "Verifying the signature…");
}

} // namespace orvane::UpdaterMessages
