#pragma once

#include <QJsonObject>
#include <QSize>
#include <QString>

namespace bench {

// What a run of one wall, or of plain decoding, has cost. Passed from the measuring process to the table as JSON.
struct Figures
{
    double cpuPerFrame = 0; // milliseconds of the process, a shown frame
    double shownShare = 0;  // of the frames that the clips have, 0..1
    int threads = 0;
    double memory = 0;      // megabytes a window, above the wall without streams
    double hiddenShare = 0; // of its processor time, that the wall takes while it is hidden
    double start = 0;       // seconds from the first call until every window shows a picture

    QJsonObject toJson() const;
    static Figures fromJson(const QJsonObject& json);
};

void print(const Figures& figures); // a line of JSON

double processCpuSeconds();
double residentMegabytes();
int threadCount();

// Makes the clip unless it is there: H.264, a minute. Empty when that failed.
QString clip(int framesPerSecond, QSize size = {704, 576});

// Decodes the clip on one thread and shows nothing: what no wall can do without.
Figures decodeOnly(const QString& clip);

} // namespace bench
