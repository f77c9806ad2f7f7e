#pragma once

#include "src/auxiliary.h"

#include <QJsonDocument>
#include <QString>

#include <mutex>

// The user's settings in local.json, the working folders that they name, and what else is not tied to a window: file
// dialogs and string protection.
//
// All objects of the class work on one file and share the settings last read from it, so an object costs nothing: who
// needs one setting asks LocalInfo().GetLocalInfo(key).
//
// Any thread may call any function at any time; those that show a dialog belong on a thread that may show widgets. The
// file is replaced whole or not at all. Documents that are answered belong to the caller; null requests count as empty.
class LocalInfo
{
public:
    // One setting as text, empty where the file lacks it. Reads the file each time, so that a change on disk shows.
    QString GetLocalInfo(const QString& key) const;

    // {"errorModule", "errorCode", "localConfig"}; makes the file where there is none.
    QJsonDocument* ReadLocalFile() const;

    // Lays {"localConfig": {...}} over the settings last read and writes them all: 0, or -1 when they cannot be
    // written.
    int WriteLocalFile(const QJsonDocument* document) const;

    // Writes the default settings, with the folders that they name: 0, or -1 when the file cannot be written.
    int CreatLocalInfo() const;
    void CreatLocalInfoFolder() const;

    // Dialogs and the desktop, on the caller's thread.
    QJsonDocument* OpenFileBrowser(const QJsonDocument* request);
    void OpenDirectory(const QJsonDocument* request) const;

    // String protection by the stream engine.
    QJsonDocument* SetSecretKey(const QJsonDocument* request) const;
    void SetOriginalString(const QJsonDocument* request);
    QJsonDocument* GetEncryptString(const QJsonDocument* request) const;
    QJsonDocument* GetDecryptString(const QJsonDocument* request) const;

private:
    const auxiliary tools_{};
    mutable std::mutex lock_; // guards what follows; never held over a dialog or the engine
    bool encrypted_ = false;
    QString originalString_;
    QString browsedPath_;
};
