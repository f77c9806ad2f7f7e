#include "include/lumen_deck/lumen_deck.h"
#include "include/tide_pipe/tide_pipe.h"
#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "src/interface/Arrangement.h"
#include "src/interface/CallFrame.h"
#include "src/player/Requests.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>

using namespace quillmark::lumen_deck;

namespace {

// Main thread. The engine is started once in a process; one that failed is tried again by the next call.
std::shared_ptr<ErrorBase> ensure_tide_pipe_loaded()
{
    static bool loaded = false;
    if (!loaded)
        loaded = TP_InitLib(QCoreApplication::applicationDirPath().toLocal8Bit().constData()) == 0;
    if (loaded)
        return nullptr;
    const unsigned code = TP_GetLastError();
    const QString message = "error loading libtidepipe tidepipe last error is " + QString::number(code);
    qWarning().noquote() << message;
    return std::make_shared<TidePipeError>(message, LUMEN_HERE, static_cast<int>(code));
}

// The wall is built even when the engine is not there: its windows then answer each request with the engine's error.
std::shared_ptr<ErrorBase> initialize(QWidget* mainWindow)
{
    if (!mainWindow)
        return std::make_shared<ReferenceError>("LD_Initialize needs a main window", LUMEN_HERE);
    if (mainWindow->thread() != QThread::currentThread())
        return std::make_shared<InvalidStatusError>("LD_Initialize must be called on the main window's thread",
                                                    LUMEN_HERE);
    const std::shared_ptr<ErrorBase> engineError = ensure_tide_pipe_loaded();
    acquireDispatcher()->serve();
    const std::shared_ptr<ErrorBase> layoutError = Layout(mainWindow).setLayout(QJsonDocument(makeLayout(1, 0)));
    return engineError ? engineError : layoutError;
}

} // namespace

QJsonDocument* LD_Initialize(QWidget* mainWindow)
{
    qDebug() << "Initialize of mainWindow" << static_cast<const void*>(mainWindow);
    return dealResult(initialize(mainWindow));
}

QJsonDocument* LD_Uninitialize(QWidget* mainWindow)
{
    qDebug() << "Uninitialize of mainWindow" << static_cast<const void*>(mainWindow);
    return nullptr;
}

void LD_Release(void* document)
{
    delete static_cast<QJsonDocument*>(document);
}

LD_EventCallback LD_InstallEventCallback(LD_EventType type, LD_EventCallback callback)
{
    qDebug() << "LD_InstallEventCallback eventType " << type << " callback pointer " << (callback != nullptr);
    return installCallback(type, callback);
}

void LD_HideWindow(QWidget* mainWindow, int index)
{
    qDebug() << "LD_HideWindow";
    Layout(mainWindow).hide(QVariant(index));
}

void LD_ShowWindow(QWidget* mainWindow, int index)
{
    qDebug() << "LD_ShowWindow";
    Layout(mainWindow).show(QVariant(index));
}

bool LD_IsWindowHidden(QWidget* mainWindow, int index)
{
    qDebug() << "LD_IsWindowHidden";
    return Layout(mainWindow).isHidden(QVariant(index));
}

int LD_WindowCount(QWidget* mainWindow)
{
    qDebug() << "LD_WindowCount";
    return Layout(mainWindow).size();
}

bool LD_IsWindowPlaying(QWidget* mainWindow, int index)
{
    qDebug() << "LD_IsWindowPlaying";
    return isPlaying(mainWindow, index);
}

int LD_WndResolutionChange(const QWidget* window)
{
    qDebug() << "LD_WndResolutionChange";
    return tellResolutionChange(window);
}
