#pragma once

#include "host/wall/Deck.h"

#include <QObject>
#include <QString>

#include <vector>

namespace quillmark::lumen_wall {

// Where a view looks, and how long a cruise stays there.
struct FisheyePreset
{
    double x = 0, y = 0, z = 0;
    int seconds = 0;
};

enum class FisheyeRole
{
    None = -1,
    View = 0,
    Panorama = 2,
    Origin = 3
};

// A round picture on the wall: dewarped views of one stream, or the windows of a device that dewarps by itself. Moves
// act on the selected window. Main thread.
class Fisheye : public QObject
{
    Q_OBJECT

public:
    explicit Fisheye(Deck& deck)
        : deck_(deck)
    {
    }

    bool corrects() const { return deck_.cells().isOneStream(); }

    // Everything else on the wall ends, as the views take its place.
    void show(int mounting, int arrangement, const QString& source, const QString& auth);

    void step(int direction, int speed); // 0 up, 1 down, 2 left, 3 right, 4 zoom in, 5 zoom out
    bool scan(bool on, int speed);       // of the whole wall when it ends; whether it goes on
    bool cruise(bool on);                // through all presets

    void loadPresets(); // those of the settings, once
    const std::vector<FisheyePreset>& presets() const { return presets_; }
    void keepPreset(int seconds);
    void usePreset(size_t index);
    void dropPreset(size_t index);

    void setRole(int window, FisheyeRole role, int number);
    void setBoxes(int count); // in a ring, for the user to drag; 0 removes them

signals:
    void presetsChanged();

private:
    void savePresets();

    Deck& deck_;
    std::vector<FisheyePreset> presets_;
    bool loaded_ = false;
};

// What the user did with a picture that the device dewarps.
QString fisheyeReport(const QJsonObject& info);

} // namespace quillmark::lumen_wall
