#pragma once

#include "tests/support/Documents.h"
#include "tests/support/Journal.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace local_test {

using documents::json;
using documents::object;

inline QJsonObject objectOf(QJsonDocument* answer)
{
    return answer ? std::unique_ptr<QJsonDocument>(answer)->object() : QJsonObject{{"null", true}};
}

// A root folder of its own for each test: PWD points there.
class RootFolder : public ::testing::Test
{
protected:
    void SetUp() override
    {
        before_ = qgetenv("PWD");
        qputenv("PWD", folder_.path().toLocal8Bit());
    }
    void TearDown() override { qputenv("PWD", before_); }

    QString root() const { return folder_.path(); }
    QString configPath() const { return root() + "/.HarborKit/local.json"; }
    QByteArray configBytes() const { return bytesOf(configPath()); }

    static QByteArray bytesOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void writeBytes(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

private:
    QTemporaryDir folder_;
    QByteArray before_;
};

} // namespace local_test
