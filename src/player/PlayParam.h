#pragma once

#include "include/tide_pipe/tide_pipe.h"
#include "src/util/Errors.h"

#include <QJsonObject>
#include <QObject>

#include <memory>

namespace quillmark::lumen_deck {

// How the device is to transcode what a window plays next. A direct child of the play window. Main thread only.
class PlayParam : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    std::shared_ptr<JsonError> setTransParam(const QJsonObject& params);
    const _TP_TRANSPARAM& block() const { return block_; }

private:
    _TP_TRANSPARAM block_{};
};

static_assert(sizeof(_TP_TRANSPARAM) == 28);

} // namespace quillmark::lumen_deck
