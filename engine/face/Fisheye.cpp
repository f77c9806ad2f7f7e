#include "engine/face/WithStream.h"
#include "include/tide_pipe/tide_pipe.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>

using tide::answer;
using tide::CorrectType;
using tide::Engine;
using tide::fail;
using tide::Failure;
using tide::PlaceType;
using tide::Point;
using tide::ViewParam;

namespace {

constexpr unsigned kZoom = 2;
constexpr unsigned kAngle = 4;
constexpr unsigned kPosition = 8;
constexpr unsigned kColour = 16;

constexpr float kMostStep = 1.0F; // half a turn

bool areFinite(std::initializer_list<float> values)
{
    return std::all_of(values.begin(), values.end(), [](float value) { return std::isfinite(value); });
}

std::optional<PlaceType> placeOf(int type)
{
    return type >= 1 && type <= 3 ? std::optional(static_cast<PlaceType>(type)) : std::nullopt;
}

std::optional<CorrectType> correctOf(int type)
{
    const bool known = type >= 0 && type <= 0x400 && type % 0x100 == 0;
    return known ? std::optional(static_cast<CorrectType>(type)) : std::nullopt;
}

// Everything that is stored can be shown: numbers are brought into range, and what is no number is refused.
std::optional<ViewParam> changed(ViewParam param, const _TP_FISHEYEPARAM& by)
{
    const bool bad = ((by.mask & kZoom) && !areFinite({by.z})) || ((by.mask & kAngle) && !areFinite({by.angle})) ||
                     ((by.mask & kPosition) && !areFinite({by.x, by.y}));
    if (bad)
        return std::nullopt;
    if (by.mask & kZoom)
        param.z = std::clamp(by.z, tide::kWidestZoom, tide::kNarrowestZoom);
    if (by.mask & kAngle)
        param.angle = static_cast<float>(std::remainder(by.angle, 2 * tide::kPi));
    if (by.mask & kPosition) {
        const Point position = tide::LensModel().intoCircle({by.x, by.y});
        param.x = static_cast<float>(position.x);
        param.y = static_cast<float>(position.y);
    }
    if (by.mask & kColour)
        std::copy_n(by.color, param.colour.size(), param.colour.begin());
    return param;
}

_TP_FISHEYEPARAM recordOf(const ViewParam& param)
{
    _TP_FISHEYEPARAM record{};
    record.mask = kZoom | kAngle | kPosition | kColour;
    record.x = param.x;
    record.y = param.y;
    record.z = param.z;
    record.angle = param.angle;
    std::copy_n(param.colour.begin(), param.colour.size(), record.color);
    return record;
}

// Looks up the views of the stream, of which `viewId` is one, and answers what the command answers.
template <typename Command> int withViews(int playId, int viewId, Command command)
{
    const auto views = Engine::instance().findViews(playId, viewId);
    return views ? answer(command(*views)) : fail(Failure::NoSuchId);
}

void refresh(const tide::FisheyeViews& views, int viewId)
{
    Engine::instance().presenter().refresh(views.concernedBy(viewId));
}

std::optional<Point> pointOf(const _TP_PTZPARAM* point)
{
    return point && areFinite({point->x, point->y}) ? std::optional(Point{point->x, point->y}) : std::nullopt;
}

void store(const Point& position, float* x, float* y)
{
    *x = static_cast<float>(position.x);
    *y = static_cast<float>(position.y);
}

} // namespace

int TP_FEC_Play(int realPlayId, TP_WId window, const _TP_FISHEYEPARAM* param, int placeType, int correctType)
{
    const auto place = placeOf(placeType);
    const auto correct = correctOf(correctType);
    const auto start = param ? changed({}, *param) : std::nullopt;
    if (!place || !correct || !start)
        return fail(Failure::BadArgument);
    int viewId = -1;
    const Failure failure = Engine::instance().playView(realPlayId, window, *place, *correct, *start, viewId);
    return failure == Failure::None ? viewId : fail(failure);
}

int TP_FECRigisterDrawFun(int realPlayId, int viewId, TP_FECDrawFun fn, void* user)
{
    return withViews(realPlayId, viewId, [&](const tide::FisheyeViews&) {
        tide::DrawHook hook;
        if (fn)
            hook = [fn, user](void* drawContext) { fn(user, 0, 0, drawContext, 0, 0); };
        return Engine::instance().presenter().setHook(viewId, std::move(hook)) ? Failure::None : Failure::NoSuchId;
    });
}

int TP_FEC_GetParam(int realPlayId, int viewId, _TP_FISHEYEPARAM* param)
{
    if (!param)
        return fail(Failure::BadArgument);
    return withViews(realPlayId, viewId, [&](const tide::FisheyeViews& views) {
        const auto present = views.param(viewId);
        if (!present)
            return Failure::NoSuchId;
        *param = recordOf(*present);
        return Failure::None;
    });
}

int TP_FEC_UpDateParam(int realPlayId, int viewId, const _TP_FISHEYEPARAM* param)
{
    if (!param)
        return fail(Failure::BadArgument);
    return withViews(realPlayId, viewId, [&](tide::FisheyeViews& views) {
        const Failure failure = views.update(viewId, [&](const ViewParam& old) { return changed(old, *param); });
        if (failure == Failure::None)
            refresh(views, viewId);
        return failure;
    });
}

int TP_FEC_SetDrawType(int realPlayId, int drawType)
{
    const auto views = Engine::instance().findViews(realPlayId);
    if (!views)
        return fail(Failure::NoSuchId);
    if (drawType < 0 || drawType > 2)
        return fail(Failure::BadArgument);
    if (views->setDrawType(static_cast<tide::DrawType>(drawType)))
        Engine::instance().presenter().refresh(views->withBoxes());
    return 0;
}

int TP_FEC_SetFinshDraw(int realPlayId, int viewId)
{
    return withViews(realPlayId, viewId, [&](tide::FisheyeViews& views) {
        if (!views.setFinish(viewId))
            return Failure::NoSuchId;
        Engine::instance().presenter().refresh(views.withBoxes());
        return Failure::None;
    });
}

int TP_FEC_IsInFinshDraw(int realPlayId, int* viewId, float x, float y)
{
    if (!viewId || !areFinite({x, y}))
        return fail(Failure::BadArgument);
    const auto views = Engine::instance().findViews(realPlayId);
    const auto box = views ? views->boxAt({x, y}) : std::nullopt;
    if (!box)
        return fail(Failure::NoSuchId);
    *viewId = *box;
    return 0;
}

int TP_FEC_PTZ2WindowEx(int realPlayId, int viewId, int ownViewId, const _TP_PTZPARAM* start, const _TP_PTZPARAM* from,
                        const _TP_PTZPARAM* to, float* x, float* y)
{
    const auto starts = pointOf(start);
    const auto begins = pointOf(from);
    const auto ends = pointOf(to);
    if (!starts || !begins || !ends || !x || !y)
        return fail(Failure::BadArgument);
    return withViews(realPlayId, viewId, [&](const tide::FisheyeViews& views) {
        Point position;
        const Failure failure = views.drag(viewId, ownViewId, *starts, *begins, *ends, position);
        if (failure == Failure::None)
            store(position, x, y);
        return failure;
    });
}

int TP_FEC_TestScan(int realPlayId, int viewId, float* x, float* y, int placeType, float step)
{
    const auto place = placeOf(placeType);
    if (!place || !x || !y || !areFinite({*x, *y, step}) || std::abs(step) > kMostStep)
        return fail(Failure::BadArgument);
    return withViews(realPlayId, viewId, [&](tide::FisheyeViews& views) {
        Point position;
        const Failure failure = views.scan(viewId, *place, {*x, *y}, step, position);
        if (failure == Failure::None)
            store(position, x, y);
        return failure;
    });
}

// The second member of the record has no meaning, nor has the third rotation.
int TP_SR_Rotate(int playId, const _TP_SRTRANSFER* transfer)
{
    if (!transfer || !transfer->element)
        return fail(Failure::BadArgument);
    return tide::withStream(playId, [&](const tide::Stream& stream) {
        const auto eagleEye = Engine::instance().findEagleEye(stream.id());
        if (!eagleEye)
            return Failure::WrongState;
        const _TP_SRTRANSFERELEMENT& by = *transfer->element;
        const Failure failure = eagleEye->rotate(by.e0, by.e1, by.e3);
        if (failure == Failure::None)
            Engine::instance().presenter().refresh({stream.id()});
        return failure;
    });
}
