#include "src/fisheye/FisheyeArrangement.h"

#include <iterator>

namespace quillmark::lumen_deck {

namespace {

// clang-format off
#define CELL(left, top, width, height, color)                                                                          \
    R"({"left":)" #left R"(,"top":)" #top R"(,"width":)" #width R"(,"height":)" #height                                \
    R"(,"border_color":")" color R"("})"
// Square and black around: for a round picture.
#define ROUND(left, top, width, height, color)                                                                         \
    R"({"left":)" #left R"(,"top":)" #top R"(,"width":)" #width R"(,"height":)" #height                                \
    R"(,"border_color":")" color R"(","ratio":4,"background_color":"#000000"})"

#define UPPER_RIGHT_QUARTER CELL(0.5, 0, 0.5, 0.5, "#00ff00")
#define LOWER_LEFT_QUARTER  CELL(0, 0.5, 0.5, 0.5, "#0000ff")
#define LOWER_RIGHT_QUARTER CELL(0.5, 0.5, 0.5, 0.5, "#ffff00")
#define NINE_BEFORE_MIDDLE                                                                                             \
    CELL(0, 0, 0.333, 0.333, "#ff0000") "," CELL(0.333, 0, 0.333, 0.333, "#00ff00") ","                                \
    CELL(0.666, 0, 0.333, 0.333, "#0000ff") "," CELL(0, 0.333, 0.333, 0.333, "#ffff00") ","
#define NINE_MIDDLE     CELL(0.333, 0.333, 0.333, 0.333, "#8000ff")
#define NINE_SIXTH "," CELL(0.666, 0.333, 0.333, 0.333, "#00ffff")
#define NINE_AFTER_MIDDLE NINE_SIXTH ","                                                                               \
    CELL(0, 0.666, 0.333, 0.333, "#ff8000") "," CELL(0.333, 0.666, 0.333, 0.333, "#008080") ","                        \
    CELL(0.666, 0.666, 0.333, 0.333, "#90613a")

constexpr const char* kOneRound = "[" ROUND(0, 0, 1.0, 1.0, "#FF0000") "]";
constexpr const char* kOne = R"([{"left":0,"top":0,"width":1.0,"height":1.0,"border_color":"#FF0000","ratio":0}])";
constexpr const char* kThree =
    "[" CELL(0, 0, 0.5, 0.5, "#f00") "," UPPER_RIGHT_QUARTER "," LOWER_LEFT_QUARTER "]";
constexpr const char* kFourRound = "[" ROUND(0, 0, 0.5, 0.5, "#f00") ","
    UPPER_RIGHT_QUARTER "," LOWER_LEFT_QUARTER "," LOWER_RIGHT_QUARTER "]";
constexpr const char* kFour = "[" CELL(0, 0, 0.5, 0.5, "#f00") ","
    UPPER_RIGHT_QUARTER "," LOWER_LEFT_QUARTER "," LOWER_RIGHT_QUARTER "]";
constexpr const char* kNineRound =
    "[" NINE_BEFORE_MIDDLE ROUND(0.333, 0.333, 0.333, 0.333, "#8000ff") NINE_AFTER_MIDDLE "]";
constexpr const char* kNine = "[" NINE_BEFORE_MIDDLE NINE_MIDDLE NINE_AFTER_MIDDLE "]";
constexpr const char* kSideBySide = "[" CELL(0, 0, 0.5, 1, "#ff0000") "," CELL(0.5, 0, 0.5, 1, "#00ff00") "]";
constexpr const char* kAbove = "[" CELL(0, 0, 1, 0.666, "#ff0000") "," CELL(0, 0.666, 1, 0.333, "#00ff00") "]";
constexpr const char* kSixAbove =
    "[" NINE_BEFORE_MIDDLE NINE_MIDDLE NINE_SIXTH "," CELL(0, 0.666, 1, 0.333, "#ff8000") "]";

constexpr FisheyeWindowParam kCircle{FisheyeCircle, kCorrectCircle};
constexpr FisheyeWindowParam kCircleAsView{FisheyeCircle, kCorrectView};
constexpr FisheyeWindowParam kTurning{FisheyeTurning, kCorrectTurning};
constexpr FisheyeWindowParam kPanorama{FisheyePanorama, kCorrectPanorama};
constexpr FisheyeWindowParam kWall{FisheyeWall, kCorrectWall};

using Starts = std::vector<FisheyeArrangement::Start>;

constexpr float kThird = 1.0F / 3.0F;
constexpr float kTwoThirds = 2.0F / 3.0F;

const std::vector<FisheyeArrangement>& arrangements()
{
    static const Starts pair = {{0, 0.25F, 0.5F}, {1, 0.75F, 0.5F}};
    static const Starts triangleAfter = {{1, 0.5F, kThird}, {2, kThird, kTwoThirds}, {3, kTwoThirds, kTwoThirds}};
    static const Starts triangleAround = {{0, 0.5F, kThird}, {2, kThird, kTwoThirds}, {3, kTwoThirds, kTwoThirds}};
    static const Starts square = {{0, kThird, kThird}, {1, kTwoThirds, kThird},
                                  {2, kThird, kTwoThirds}, {3, kTwoThirds, kTwoThirds}};
    static const Starts ring = {{0, 0.3375F, 0.3125F}, {1, 0.5F, 0.25F}, {2, 0.6625F, 0.3125F},
                                {3, 0.2625F, 0.5F},                      {5, 0.7375F, 0.5F},
                                {6, 0.3375F, 0.6875F}, {7, 0.5F, 0.75F}, {8, 0.6625F, 0.6875F}};
    static const Starts grid = {{0, 0.25F, 0.25F}, {1, 0.5F, 0.25F}, {2, 0.75F, 0.25F},
                                {3, 0.25F, 0.5F},  {4, 0.6F, 0.6F},  {5, 0.75F, 0.5F},
                                {6, 0.25F, 0.75F}, {7, 0.5F, 0.75F}, {8, 0.75F, 0.75F}};
    static const Starts twoRows = {{0, 0.25F, 0.25F}, {1, 0.5F, 0.25F}, {2, 0.75F, 0.25F},
                                   {3, 0.25F, 0.75F}, {4, 0.5F, 0.75F}, {5, 0.75F, 0.75F}};
    static const std::vector<FisheyeArrangement> table = {
        {1, kOneRound,   {{0, kCircle}},       {}},
        {1, kOne,        {{0, kPanorama}},     {}},
        {1, kOne,        {},                   {}},
        {1, kOne,        {{0, kTurning}},      {}},
        {3, kThree,      {{2, kPanorama}},     pair},
        {4, kFourRound,  {{0, kCircle}},       triangleAfter},
        {4, kFour,       {{1, kPanorama}},     triangleAround},
        {4, kFour,       {},                   square},
        {9, kNineRound,  {{4, kCircle}},       ring},
        {9, kNine,       {{4, kPanorama}},     ring},
        {9, kNine,       {},                   grid},
        {1, kOne,        {{0, kCircleAsView}}, {}},
        {1, kOne,        {{0, kWall}},         {}},
        {4, kFour,       {{0, kWall}},         triangleAround},
        {9, kNine,       {{4, kWall}},         ring},
        {2, kSideBySide, {},                   pair},
        {2, kAbove,      {{1, kPanorama}},     {{0, 0.5F, 0.2F}}},
        {7, kSixAbove,   {{6, kPanorama}},     twoRows},
    };
    return table;
}
// clang-format on

constexpr FEC_COLOR kColors[] = {{255, 0, 0, 255},   {0, 255, 0, 255},   {0, 0, 255, 255},
                                 {255, 255, 0, 255}, {128, 0, 255, 255}, {0, 255, 255, 255},
                                 {255, 128, 0, 255}, {0, 128, 128, 255}, {144, 97, 58, 255}};

} // namespace

const FisheyeArrangement& fisheyeArrangement(int type)
{
    return arrangements()[static_cast<std::size_t>(type > 0 && type <= kLastArrangement ? type : 0)];
}

FEC_COLOR fisheyeColor(int index)
{
    return index >= 0 && index < static_cast<int>(std::size(kColors)) ? kColors[index] : FEC_COLOR();
}

} // namespace quillmark::lumen_deck
