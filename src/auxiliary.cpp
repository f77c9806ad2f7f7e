#include "src/auxiliary.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QThread>
#include <QWidget>

namespace {

// A widget made on any other thread would take the host down.
bool mayShowDialogs()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) &&
           QThread::currentThread() == QCoreApplication::instance()->thread();
}

enum DialogMode
{
    AskForOpenName = 0,
    AskForSaveName = 1,
    AskForFolder = 2
};

QString cancelledPath(int mode, const QString& filter)
{
    return mode == auxiliary::AskForSaveName && (filter.contains(".xls") || filter.contains("*")) ? "/" : "";
}

QString saveName(QWidget* parent, const QString& directory, const QString& filter, QString& selectedFilter)
{
    const bool isExcel = filter.contains(".xls");
    const QString start = isExcel ? "./untitle.xls" : filter.contains("*") ? "./untitle" : directory;
    const QString path = QFileDialog::getSaveFileName(parent, "", start, filter, &selectedFilter);
    if (path.isEmpty())
        return cancelledPath(auxiliary::AskForSaveName, filter);
    return isExcel && !path.endsWith(".xls") ? path + ".xls" : path;
}

QString folderName(const QString& directory)
{
    QFileDialog dialog(nullptr, "", "", "");
    dialog.setWindowFlags(Qt::WindowStaysOnTopHint);
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setDirectory(directory);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

QString auxiliary::GetUserHomePath() const
{
    return qEnvironmentVariable("PWD", "/opt/quillmark");
}

QJsonDocument auxiliary::getJsonDocumentFromString(const QString& text) const
{
    const QByteArray bytes = text.toUtf8();
    QJsonDocument document = QJsonDocument::fromJson(QByteArray(bytes.constData()));
    if (document.isNull())
        qDebug("===> please check the string %s", bytes.constData());
    return document;
}

void auxiliary::doresult(QJsonObject& object) const
{
    if (object.contains("errorModule"))
        return;
    object["errorCode"] = 0;
    object["errorModule"] = "";
}

bool auxiliary::CheckDirectory(const QString& path) const
{
    return QDir(path).mkdir(path);
}

QString auxiliary::getAllTypeFileName(int mode, const QString& directory, const QString& filter,
                                      QString& selectedFilter) const
{
    if (!mayShowDialogs())
        return cancelledPath(mode, filter);
    QWidget parent;
    parent.activateWindow();
    switch (mode) {
    case AskForSaveName:
        return saveName(&parent, directory, filter, selectedFilter);
    case AskForFolder:
        return folderName(directory);
    default:
        return QFileDialog::getOpenFileName(&parent, "", directory, filter, &selectedFilter);
    }
}

void auxiliary::CreateJson(const QMap<QString, QVariant>* map, QJsonDocument* document) const
{
    *document = QJsonDocument::fromJson(QJsonDocument::fromVariant(QVariant(*map)).toJson());
}

void auxiliary::ParseJson(const QJsonDocument* document, QMap<QString, QVariant>* map) const
{
    map->clear();
    if (document)
        MergeJson(document->object(), *map);
}

void auxiliary::MergeJson(const QJsonObject& object, QMap<QString, QVariant>& map) const
{
    for (auto field = object.constBegin(); field != object.constEnd(); ++field) {
        const QJsonValue value = field.value();
        const QJsonObject inner = value.toObject();
        for (auto innerField = inner.constBegin(); innerField != inner.constEnd(); ++innerField)
            map[innerField.key()] = innerField.value().toString();
        if (inner.isEmpty())
            map[field.key()] = value.isDouble() ? QVariant(value.toInt(0)) : QVariant(value.toString());
    }
}
