#pragma once

#include "host/wall/Operator.h"

#include <QTimer>

namespace quillmark::lumen_wall {

// Looks after the recordings of a wall once a second: how large they are, and whether the disk has room for more.
class RecordingWatch : public QObject
{
    Q_OBJECT

public:
    explicit RecordingWatch(Operator& wall);

signals:
    void reported(int severity, int cell, const QString& text);

private:
    void look();
    void lookAtDisk(const QStringList& folders);
    qint64 bytesOf(const Recording& recording, const QStringList& folders) const;

    Deck& deck_;
    QTimer timer_;
    bool warned_ = false;
};

// The folders that recordings go to: of live streams, of others.
QStringList recordingFolders(Deck& deck);

} // namespace quillmark::lumen_wall
