#include "src/player/IFisheyeModule.h"

#include <QWidget>

namespace quillmark::lumen_deck {

IFisheyeModule* findFisheyeModule(const QWidget* mainWindow)
{
    return mainWindow->findChild<IFisheyeModule*>(QString(), Qt::FindDirectChildrenOnly);
}

int correctionTypeOf(const QWidget* mainWindow)
{
    const IFisheyeModule* module = findFisheyeModule(mainWindow);
    return module ? module->getCorrectionType() : 0;
}

} // namespace quillmark::lumen_deck
