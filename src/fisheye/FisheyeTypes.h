#pragma once

// The vocabulary of the fisheye layer.
namespace quillmark::lumen_deck {

// Who turns the round picture into views.
enum FisheyeExpandType : int
{
    DeviceExpansion = 0,   // the device; each window plays a stream of its own
    SoftwareCorrection = 1 // the stream engine; one hidden stream feeds all windows
};

// The role of a window.
enum FisheyeWindowType : int
{
    FisheyeNoRole = -1,
    FisheyeView = 0,     // looks somewhere, and can be moved
    FisheyeTurning = 1,  // turns with a drag
    FisheyePanorama = 2, // turns with a drag, or carries the boxes of the views
    FisheyeOrigin = 3,   // the round picture of a device
    FisheyeWall = 4,     // the whole picture of a camera on a wall
    FisheyeCircle = 5    // the round picture of a dewarped stream
};

// How the camera is mounted, as the engine counts it. On a wall the directions of the round picture are those of its
// views.
constexpr int kPlaceWall = 1;
constexpr int kPlaceCeiling = 3;

// The engine's dewarp modes.
constexpr int kCorrectCircle = 0;
constexpr int kCorrectView = 0x100;
constexpr int kCorrectTurning = 0x200;
constexpr int kCorrectPanorama = 0x300;
constexpr int kCorrectWall = 0x400;

// The fields of a _TP_FISHEYEPARAM that count.
enum FisheyeMask : unsigned
{
    FisheyeZoomField = 2,
    FisheyeAngleField = 4,
    FisheyePositionField = 8,
    FisheyeColorField = 16
};

// A direction of a step.
enum PTZType : unsigned
{
    PTZUp = 0,
    PTZDown = 1,
    PTZLeft = 2,
    PTZRight = 3,
    PTZZoomIn = 4,
    PTZZoomOut = 5
};

constexpr float kStartZoom = -0.05F;

// Where a view looks: x and y from 0 to 1 of the round picture, z the engine's zoom.
struct FisheyePTZ
{
    float x = 0.6F;
    float y = 0.6F;
    float z = kStartZoom;
};

struct FisheyePTZCruise
{
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
    int time = 0; // seconds to stay
};

struct FEC_COLOR
{
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    int alpha = 0; // 0 for no colour
};
static_assert(sizeof(FEC_COLOR) == 8);

struct FisheyeWindowParam
{
    FisheyeWindowType windowType;
    int correctType;
};

} // namespace quillmark::lumen_deck
