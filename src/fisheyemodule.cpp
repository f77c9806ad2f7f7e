#include "src/fisheyemodule.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/fisheye/FisheyeWindow.h"
#include "src/player/Requests.h"
#include "src/util/JsonUtil.h"

#include <QJsonObject>
#include <QVariantList>

#include <algorithm>
#include <iterator>
#include <vector>

namespace quillmark::lumen_deck {

namespace {

// A request as an operation gets it: the values of its keys in order, and the whole.
struct Request
{
    const QJsonDocument& document;
    QVariantList values;

    int number(int key) const { return toInt(values[key]); }
    QString text(int key) const { return values[key].toString(); }
};

struct RequiredKey
{
    const char* name;
    const char* missing; // what the host hears
};

struct Operation
{
    FisheyeModuleInterface number;
    std::vector<RequiredKey> keys;
    int (*run)(FisheyeModule&, const Request&); // fails by a negative number
    const char* failed;                         // what the host hears then
};

// clang-format off
using M = FisheyeModule;
using R = Request;

const Operation kOperations[] = {
    {FisheyeSetCorrectionType, {{"type", "setModuleCorrectionType param error"}},
     [](M& m, const R& r) { m.setCorrectionType(r.number(0)); return 0; }, nullptr},
    {FisheyeSetPlaceType, {{"type", "setModuleCorrectionType param error"}},
     [](M& m, const R& r) { m.setPlaceType(qint64(r.number(0)) + kPlaceWall); return 0; }, nullptr},
    {FisheyeArrange, {},
     [](M& m, const R& r) { return m.parseFisheyeWindowArrange(r.document); }, "parseFisheyeWindowArrange param error"},
    {FisheyePlay, {}, [](M& m, const R& r) { return m.play(r.document); }, "play param error"},
    {FisheyeStop, {}, [](M& m, const R& r) { return m.stop(r.document); }, "play param error"},
    {FisheyeStep, {{"direction", "setModuleFisheyePTZ param error"}, {"speed", "setModuleFisheyePTZ param error"}},
     [](M& m, const R& r) {
         return m.setFisheyePTZ(m.selectedSubWindow(), static_cast<unsigned>(r.number(0)),
                                static_cast<unsigned>(r.number(1)));
     }, "setFisheyePTZ param error"},
    {FisheyeSetPreset, {},
     [](M& m, const R& r) { return m.setSubWindowPTZParam(m.selectedSubWindow(), r.document); },
     "setSubWindowPTZParam param error"},
    {FisheyeStartScan, {{"speed", "startModuleFisheyeScan param error"}},
     [](M& m, const R& r) { return m.startFisheyeScan(m.selectedSubWindow(), r.number(0)); },
     "startFisheyeScan param error"},
    {FisheyeStopScan, {}, [](M& m, const R&) { return m.stopFisheyeScan(); }, nullptr},
    {FisheyeStartCruise, {},
     [](M& m, const R& r) { return m.startFisheyeCruise(m.selectedSubWindow(), r.document); },
     "startFisheyeCruise param error"},
    {FisheyeStopCruise, {}, [](M& m, const R&) { return m.stopFisheyeCruise(); }, nullptr},
    {FisheyeStartListener, {{"url", "startModuleFisheyeListener url param error"},
                            {"auth", "startModuleFisheyeListener authinfo param error"},
                            {"extData", "startModuleFisheyeListener exData param error"}},
     [](M& m, const R& r) { return m.startFisheyeListener(r.text(0), r.text(1), r.text(2)); },
     "startModuleFisheyeListener called error"},
    {FisheyeStopListener, {}, [](M& m, const R&) { return m.stopFisheyeListener(); },
     "stopFisheyeListener param error"},
    {FisheyeSetBoxes, {},
     [](M& m, const R& r) { return m.addFisheyeWindowMark(m.originWindowIndex(), r.document); },
     "addFisheyeWindowMark param error"},
    {FisheyeClearBoxes, {}, [](M& m, const R&) { return m.clearFisheyeWindowMark(m.selectedSubWindow()); },
     "clearFisheyeWindowMark param error"},
    {FisheyeSetWindow, {{"wndIndex", "setModuleSubWindowParam param error"},
                        {"type", "setModuleSubWindowParam param error"},
                        {"id", "setModuleSubWindowParam param error"}},
     [](M& m, const R& r) { return m.setSubWindowParam(r.number(0), r.number(1), r.number(2)); },
     "setSubWindowParam param error"},
};
// clang-format on

// The message of the first key that is missing, or null.
const char* readKeys(const std::vector<RequiredKey>& keys, Request& request)
{
    for (const RequiredKey& key : keys) {
        const auto [error, value] = parseRequired<QVariant>(request.document.object(), key.name);
        if (error)
            return key.missing;
        request.values.append(value);
    }
    return nullptr;
}

} // namespace

FisheyeModule* getFisheyeInstance(QWidget* mainWindow)
{
    return mainWindow ? detail::useChildOf<FisheyeModule>(mainWindow) : nullptr;
}

FisheyeModule::FisheyeModule(QWidget* mainWindow)
    : IFisheyeModule(mainWindow)
    , mainWindow_(mainWindow)
    , listener_(std::make_shared<FisheyeListenerState>(mainWindow))
{
    setCurrentMainWindow(listener_);
}

// The main widget may be going too: it is not asked for its windows any more.
FisheyeModule::~FisheyeModule()
{
    setCurrentMainWindow(nullptr);
    for (const int id : listeners_)
        TP_StopFishListener(id);
    for (FisheyeWindow* window : companions()) {
        if (!window->softwarePlay())
            continue;
        window->endView();
        delete window;
    }
    delete realWindow_;
}

std::shared_ptr<ErrorBase> FisheyeModule::setJsonParam(FisheyeModuleInterface operation, const QJsonDocument& document)
{
    if (!document.isObject())
        return constructJsonError("setJsonParam param error", document, LUMEN_HERE);
    const auto* row = std::find_if(std::begin(kOperations), std::end(kOperations),
                                   [&](const Operation& candidate) { return candidate.number == operation; });
    if (row == std::end(kOperations))
        return nullptr;
    Request request{document, {}};
    const char* failure = readKeys(row->keys, request);
    if (operation == FisheyeSetBoxes && originWindowIndex() < 0)
        failure = "no fisheye or pano window";
    if (!failure && row->run(*this, request) < 0) // after which the module may have gone
        failure = row->failed;
    return failure ? constructJsonError(failure, document, LUMEN_HERE) : nullptr;
}

int FisheyeModule::startFisheyeListener(const QString& url, const QString& auth, const QString& extData)
{
    listenerId_ =
        TP_StartFishListener(url.toUtf8().constData(), auth.toUtf8().constData(), extData.toUtf8().constData());
    if (listenerId_ >= 0)
        listeners_.insert(listenerId_);
    TP_SetFishMsgCallBack(fisheyeListenerCallback);
    return listenerId_;
}

int FisheyeModule::stopFisheyeListener()
{
    if (listenerId_ < 0)
        return -1;
    const int result = TP_StopFishListener(listenerId_);
    if (result >= 0)
        listeners_.erase(listenerId_);
    return result;
}

} // namespace quillmark::lumen_deck
