#pragma once

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QTimer>
#include <QUrl>

#include <gtest/gtest.h>

#include <functional>

namespace local_test {

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
