#pragma once

#include "include/tide_pipe/tide_pipe.h"

#include <QObject>

namespace quillmark::lumen_deck {

// What the streams ask of the eagle-eye module, a direct child of its play window. Main thread only.
class IEagleEyeModule : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual _TP_EAGLEEYEPARAM getEagleEyeParam() const = 0;
};

} // namespace quillmark::lumen_deck
