#pragma once

#include "tests/support/Documents.h"
#include "tests/support/Journal.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>

#include <gtest/gtest.h>

#include <functional>

namespace local_test {

using namespace documents;
using Operation = QJsonDocument* (*)(const QJsonDocument*);

// A root folder of its own for each test: PWD points there.
class RootFolder : public ::testing::Test
{
protected:
    RootFolder() { qputenv("PWD", folder_.path().toLocal8Bit()); }
    ~RootFolder() override { qputenv("PWD", before_); }

    QString root() const { return folder_.path(); }
    QString configPath() const { return root() + "/.HarborKit/local.json"; }
    QByteArray configBytes() const { return bytesOf(configPath()); }

    static void writeBytes(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

private:
    const QByteArray before_ = qgetenv("PWD");
    const QTemporaryDir folder_;
};

// Does `act` with the file dialog that the code under test shows while it lives; the dialogs are Qt's own.
class DialogUser
{
public:
    explicit DialogUser(std::function<void(QFileDialog&)> act)
    {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QObject::connect(&timer_, &QTimer::timeout, [this, act] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            timer_.stop();
            seen_ = true;
            act(*dialog);
        });
        timer_.start(5);
    }

    ~DialogUser() { EXPECT_TRUE(seen_) << "no dialog was shown"; }

private:
    QTimer timer_;
    bool seen_ = false;
};

// Types a name and presses the button.
inline void choose(QFileDialog& dialog, const QString& name)
{
    dialog.selectFile(name);
    dialog.findChild<QWidget*>("fileNameEdit")->setProperty("text", name);
    QMetaObject::invokeMethod(&dialog, "accept", Qt::DirectConnection);
}

// Stands in for the desktop's file manager.
class Desktop : public QObject
{
    Q_OBJECT
public:
    Desktop() { QDesktopServices::setUrlHandler("file", this, "open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler("file"); }
    QStringList opened;

public slots:
    void open(const QUrl& url) { opened.push_back(url.toString()); }
};

} // namespace local_test
