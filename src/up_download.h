#pragma once

#include "src/auxiliary.h"
#include "src/local_info.h"

#include <QJsonDocument>
#include <QMap>
#include <QString>

#include <mutex>

// Files that go to and come from a device or a server, by the stream engine: one upload and one upgrade at a time, and
// any number of downloads, which the host polls by their ids.
//
// Any thread may call any function at any time; where a request names no file, a dialog asks for it, and such a call
// belongs on a thread that may show widgets. A null answer is a success with nothing to report. Answers belong to the
// caller; null requests count as empty.
class UpDownload
{
public:
    // Uploads and device configuration.
    QJsonDocument* StartAsynUpload(const QJsonDocument* request);
    void StopAsynUpload();
    QJsonDocument* GetUploadErrorInfo() const;
    QJsonDocument* GetIpcImportErrorInfo() const;
    QJsonDocument* ImportDeviceConfig(const QJsonDocument* request) const;
    QJsonDocument* UploadFile(const QJsonDocument* request) const;
    QJsonDocument* ExportDeviceConfig(const QJsonDocument* request) const;
    QJsonDocument* ExportDeviceLog(const QJsonDocument* request) const;
    QJsonDocument* ExportFile(const QJsonDocument* request) const;
    QJsonDocument* Download(const QJsonDocument* request) const; // ExportFile or ExportDeviceConfig

    // Downloads, several at a time.
    QJsonDocument* StartDownload(const QJsonDocument* request);
    QJsonDocument* StopDownload(const QJsonDocument* request);
    QJsonDocument* GetDownloadProgress(const QJsonDocument* request) const;
    QJsonDocument* GetDownloadStatus(const QJsonDocument* request) const;
    QJsonDocument* GetDownloadInfo(const QJsonDocument* request) const;

    // The one upgrade.
    QJsonDocument* StartUpgrade(const QJsonDocument* request);
    void StopUpgrade();
    QJsonDocument* UpgradeStatus() const;
    QJsonDocument* UpgradeProgress() const;

private:
    int read(const int& id) const;
    int write(int& id, int value);
    int take(int& id); // and leaves -1
    QString chosenPath(const QString& path, int dialog, const QString& directory) const;

    const auxiliary tools_{};
    const LocalInfo localInfo_{};

    mutable std::mutex lock_; // guards what follows; never held over a dialog or the engine
    int uploadId_ = 0;
    int upgradeId_ = 0; // after a failed start the engine's last error
    QMap<int, bool> downloads_;
};
