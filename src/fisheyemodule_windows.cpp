#include "src/fisheyemodule.h"

#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "src/WindowDirectory.h"
#include "src/fisheye/FisheyeArrangement.h"
#include "src/fisheye/FisheyeWindow.h"
#include "src/player/Play.h"
#include "src/player/Player.h"
#include "src/player/Requests.h"
#include "src/player/Transport.h"

#include <QJsonObject>

#include <cmath>

// The windows of a wall that shows a round picture: which there are, what they are, and when they play.
namespace quillmark::lumen_deck {

namespace {

// The window of the hidden stream. It stands in the directory, so that its messages find their way to the host.
class RealWindow : public QWidget
{
public:
    explicit RealWindow(QWidget* mainWindow)
        : QWidget(mainWindow)
    {
        WindowDirectory& directory = WindowDirectory::instance();
        directory.add(this, nullptr);
        directory.setPlace(this, {mainWindow, -1});
    }
    ~RealWindow() override { WindowDirectory::instance().remove(this); }
};

} // namespace

FisheyeWindow* FisheyeModule::findSubWindow(int index) const
{
    const IPlayWindow* window = Layout(mainWindow_).getPlayWindow(QVariant(index));
    return window ? detail::childOf<FisheyeWindow>(window) : nullptr;
}

FisheyeWindow* FisheyeModule::getSubWindowByReference(int index)
{
    IPlayWindow* window = Layout(mainWindow_).getPlayWindow(QVariant(index));
    if (!window)
        return nullptr;
    auto* companion = detail::useChildOf<FisheyeWindow>(window);
    companions_.removeAll(nullptr);
    if (!companions_.contains(companion))
        companions_.append(companion);
    return companion;
}

QVector<FisheyeWindow*> FisheyeModule::companions() const
{
    QVector<FisheyeWindow*> alive;
    for (const QPointer<FisheyeWindow>& companion : companions_) {
        if (companion)
            alive.append(companion);
    }
    return alive;
}

int FisheyeModule::getSubWindowPlayerId(int index)
{
    const FisheyeWindow* window = getSubWindowByReference(index);
    return window ? window->getPlayerId() : -1;
}

int FisheyeModule::getFisheyeRealPlayerId() const
{
    const auto* player = realWindow_ ? realWindow_->findChild<Player*>() : nullptr;
    return player ? player->playId() : -1;
}

void FisheyeModule::resetParam(int index)
{
    if (listener_->originWindowIndex == index)
        listener_->originWindowIndex = -1;
}

int FisheyeModule::getSelectedSubWindowIndex(const QWidget* window)
{
    for (int index = subWindowCount_ - 1; index > 0; --index) {
        const FisheyeWindow* companion = getSubWindowByReference(index);
        if (companion && companion->getWindowWidget() == window)
            return index;
    }
    return 0;
}

int FisheyeModule::selectedSubWindow()
{
    return getSelectedSubWindowIndex(Layout(mainWindow_).getSelectedPlayWindow());
}

void FisheyeModule::setCorrectionType(int type)
{
    if (type != DeviceExpansion && type != SoftwareCorrection)
        return;
    resetFisheyeSubWindow();
    correctionType_ = type;
}

void FisheyeModule::setPlaceType(qint64 type)
{
    if (type >= kPlaceWall && type <= kPlaceCeiling)
        placeType_ = static_cast<int>(type);
}

// The windows of the arrangement, and those of its views that another layout has put elsewhere.
void FisheyeModule::resetFisheyeSubWindow()
{
    QVector<FisheyeWindow*> leaving;
    for (int index = 0; index < subWindowCount_; ++index) {
        if (FisheyeWindow* window = findSubWindow(index))
            leaving.append(window);
    }
    for (FisheyeWindow* window : companions()) {
        if (window->softwarePlay() && !leaving.contains(window))
            leaving.append(window);
    }
    for (FisheyeWindow* window : leaving) {
        window->endView();
        window->subWindowStop();
        delete window;
    }
}

// The host hears of the new selection and may do anything, such as ending this module.
int FisheyeModule::parseFisheyeWindowArrange(const QJsonDocument& document)
{
    const QJsonValue type = document.object().value("type");
    const double number = type.toDouble();
    if (!type.isDouble() || std::isnan(number) || number > kLastArrangement)
        return -1;
    resetFisheyeSubWindow();
    arrangeType_ = number > 0 ? static_cast<int>(number) : 0;
    const FisheyeArrangement& arrangement = fisheyeArrangement(arrangeType_);
    subWindowCount_ = arrangement.subWindowCount;
    const QPointer<FisheyeModule> self = this;
    Layout(mainWindow_).setLayout(QJsonDocument::fromJson(arrangement.layout));
    if (self)
        initFisheyeSubWindow();
    return 0;
}

void FisheyeModule::initFisheyeSubWindow()
{
    const FisheyeArrangement& arrangement = fisheyeArrangement(arrangeType_);
    for (const auto& [index, param] : arrangement.roles) {
        if (FisheyeWindow* window = getSubWindowByReference(index)) {
            window->setCorrectType(param.correctType);
            window->setWindowType(param.windowType);
        }
    }
    for (const auto& [index, x, y] : arrangement.starts) {
        if (FisheyeWindow* window = getSubWindowByReference(index))
            window->setWindowPTZ({x, y, kStartZoom});
    }
    for (int index = 0; index < subWindowCount_; ++index) {
        if (FisheyeWindow* window = getSubWindowByReference(index))
            window->setColor(fisheyeColor(index));
    }
}

int FisheyeModule::play(const QJsonDocument& document)
{
    if (fisheyeRealPlay(document) < 0)
        return -1;
    return fisheyeSubWindowPlay();
}

int FisheyeModule::fisheyeRealPlay(const QJsonDocument& document)
{
    if (!realWindow_)
        realWindow_ = new RealWindow(mainWindow_);
    return lumen_deck::play(mainWindow_, document) ? -1 : 0;
}

int FisheyeModule::fisheyeSubWindowPlay()
{
    const int realPlayId = getFisheyeRealPlayerId();
    if (realPlayId < 0)
        return -1;
    for (int index = 0; index < subWindowCount_; ++index) {
        if (!playSubWindow(index, realPlayId))
            break;
    }
    return 1;
}

// Among nine windows the boxes are drawn in another way than among fewer, and a single one has none.
bool FisheyeModule::playSubWindow(int index, int realPlayId)
{
    FisheyeWindow* window = getSubWindowByReference(index);
    if (!window)
        return true;
    const _TP_FISHEYEPARAM param{};
    window->subWindowPlay(realPlayId, window->getWindowWidget()->winId(), &param, placeType_);
    window->setSoftwarePlay(true);
    const int markType = subWindowCount_ == 9 ? 1 : 2;
    const bool alone = subWindowCount_ < 2;
    if (!alone)
        window->setTriggerMarkType(markType);
    if (window->getWindowType() == FisheyeView)
        return true;
    if (!alone)
        window->setPTZMarkParam(markType);
    return !alone;
}

int FisheyeModule::stop(const QJsonDocument& document)
{
    if (lumen_deck::stop(mainWindow_, document))
        return -1;
    for (FisheyeWindow* window : companions())
        window->subWindowStop();
    return 0;
}

int FisheyeModule::setSubWindowParam(int index, int type, int id)
{
    FisheyeWindow* window = correctionType_ == DeviceExpansion ? getSubWindowByReference(index) : nullptr;
    if (!window)
        return -1;
    window->setSoftwarePlay(false);
    if (type != FisheyeNoRole && type != FisheyeView && type != FisheyePanorama && type != FisheyeOrigin)
        return 0;
    if (type == FisheyeOrigin)
        listener_->originWindowIndex = index;
    window->setWindowType(type);
    if (type == FisheyeView)
        window->setWindowPTZId(id);
    return 0;
}

} // namespace quillmark::lumen_deck
