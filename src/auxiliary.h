#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVariant>

// What the local services share: the root folder, the flat form of a request, the marks of a successful answer, and the
// file dialogs. Without state; any thread may call all but getAllTypeFileName.
class auxiliary
{
public:
    enum DialogMode
    {
        AskForOpenName = 0,
        AskForSaveName = 1,
        AskForFolder = 2
    };

    // Where all files of the library go: the environment variable PWD, or "/opt/quillmark" where it is not set.
    QString GetUserHomePath() const;

    // Null, with a line in the debug log, when the text is no JSON. The text counts up to its first zero byte.
    QJsonDocument getJsonDocumentFromString(const QString& text) const;

    // Marks an answer as a success, unless it already names the module that failed.
    void doresult(QJsonObject& object) const;

    // Makes one level of folders; false when there is nothing to make or it cannot be made.
    bool CheckDirectory(const QString& path) const;

    // `mode` is a DialogMode; any other value asks for a file to open. A cancelled dialog answers an empty path, or
    // "/" where a name to save under was asked for by a filter with a star. Runs an event loop of its own, so no lock
    // may be held; on a thread that may not show widgets it answers as if cancelled.
    QString getAllTypeFileName(int mode, const QString& directory, const QString& filter,
                               QString& selectedFilter) const;

    void CreateJson(const QMap<QString, QVariant>* map, QJsonDocument* document) const;

    // The flat form: numbers as int, everything else as text; the fields of an inner object take its place.
    void ParseJson(const QJsonDocument* document, QMap<QString, QVariant>* map) const;

    // As ParseJson, into what the map already holds.
    void MergeJson(const QJsonObject& object, QMap<QString, QVariant>& map) const;
};
